#include "IdleClient.hpp"
#include "Mouse.hpp"
#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QAction>
#include <QMainWindow>
#include <QProcess>

#include <string>
#include <vector>

namespace tarvik::app {
namespace {

using test::pumpUntil;

void x(const QString& command) {
    QProcess::execute("xdotool", command.split(' '));
}

// A Wayland keyboard, which is X's: keys reach the top level and never the window that is embedded in it.
TEST(KeyboardTest, AnEngagedViewportHoldsItsKeysUntilTheFocusGoes) {
    test::Mouse mouse;
    x("search --name Weston windowfocus");
    AppContext context{AppOptions{}};
    bench::IdleClient client;
    auto* viewport = new VulkanViewport(context, client);
    QMainWindow window;
    auto* container = QWidget::createWindowContainer(viewport);
    viewport->setInputContainer(container);
    window.setCentralWidget(container);
    std::vector<std::string> fired;
    for (const char* keys : {"W", "Ctrl+S"}) {
        auto* action = window.addAction(keys);
        action->setShortcut(QKeySequence(keys));
        QObject::connect(action, &QAction::triggered, &window, [&fired, keys] { fired.emplace_back(keys); });
    }
    window.show();
    EXPECT_TRUE(pumpUntil([&] {
        mouse.moveTo(600, 400);
        mouse.moveTo(601, 401);
        return window.isActiveWindow() && viewport->input().mousePosition() != glm::vec2(0.0F);
    }));

    const auto expectHeld = [&](bool held) {
        EXPECT_TRUE(pumpUntil([&] { return viewport->input().isHeld(Key::W) == held; })) << held;
    };
    x("keydown w");
    expectHeld(true);
    x("keyup w");
    expectHeld(false);
    x("key ctrl+s");
    EXPECT_TRUE(pumpUntil([&] { return !fired.empty(); }));
    EXPECT_EQ(fired, std::vector<std::string>{"Ctrl+S"});

    mouse.button(test::Mouse::Button::Down); // or the pointer's leave would be enough
    mouse.button(test::Mouse::Button::Up);
    x("keydown w");
    expectHeld(true);
    QWidget other;
    other.show();
    expectHeld(false);
}

} // namespace
} // namespace tarvik::app
