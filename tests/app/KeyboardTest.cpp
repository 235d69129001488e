#include "Keyboard.hpp"
#include "IdleClient.hpp"
#include "Mouse.hpp"
#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QMainWindow>

#include <string>
#include <vector>

namespace tarvik::app {
namespace {

using test::Keyboard;
using test::pumpUntil;

// Wayland's keys reach the top level and never the window that is embedded in it.
TEST(KeyboardTest, AnEngagedViewportHoldsItsKeysUntilTheFocusGoes) {
    test::Mouse mouse;
    Keyboard keyboard;
    AppContext context{AppOptions{}};
    bench::IdleClient client;
    auto* viewport = new VulkanViewport(context, client);
    QMainWindow window;
    auto* container = QWidget::createWindowContainer(viewport);
    viewport->setInputContainer(container);
    window.setCentralWidget(container);
    auto* edit = new QLineEdit;
    window.setMenuWidget(edit);
    std::vector<std::string> fired;
    for (const char* keys : {"W", "Ctrl+S"}) {
        auto* action = window.addAction(keys);
        action->setShortcut(QKeySequence(keys));
        QObject::connect(action, &QAction::triggered, &window, [&fired, keys] { fired.emplace_back(keys); });
    }
    // Weston chooses the place of any other window, sway gives the focus to none beside such a one.
    mouse.isDevice() ? window.show() : window.showFullScreen();
    ASSERT_TRUE(pumpUntil([&] {
        mouse.moveTo(600, 400);
        mouse.moveTo(601, 401);
        return window.isActiveWindow() && viewport->input().mousePosition() != glm::vec2(0.0F);
    }));

    const auto expectHeld = [&](bool held) {
        EXPECT_TRUE(pumpUntil([&] { return viewport->input().isHeld(Key::W) == held; })) << held;
    };
    edit->setFocus();
    keyboard.press(Keyboard::Key::W);
    EXPECT_TRUE(pumpUntil([&] { return edit->text() == "w"; }));
    EXPECT_FALSE(viewport->input().isHeld(Key::W));
    keyboard.release(Keyboard::Key::W);

    mouse.button(test::Mouse::Button::Down);
    mouse.button(test::Mouse::Button::Up);
    EXPECT_TRUE(pumpUntil([&] { return !edit->hasFocus(); }));
    keyboard.press(Keyboard::Key::W);
    expectHeld(true);
    keyboard.release(Keyboard::Key::W);
    expectHeld(false);
    for (const Keyboard::Key key : {Keyboard::Key::Control, Keyboard::Key::S})
        keyboard.press(key);
    for (const Keyboard::Key key : {Keyboard::Key::S, Keyboard::Key::Control})
        keyboard.release(key);
    EXPECT_TRUE(pumpUntil([&] { return !fired.empty(); }));
    EXPECT_EQ(fired, std::vector<std::string>{"Ctrl+S"});

    keyboard.press(Keyboard::Key::W);
    expectHeld(true);
    QWidget other;
    other.show();
    expectHeld(false);
    keyboard.release(Keyboard::Key::W);
}

} // namespace
} // namespace tarvik::app
