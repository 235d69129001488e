#include "PlayWindow.hpp"
#include "Devices.hpp"
#include "Pump.hpp"
#include "RedBoxProject.hpp"
#include "Session.hpp"
#include "TemporaryFolder.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QTest>

#include <utility>

namespace tarvik::editor {

using test::pumpUntil;

TEST(PlayWindowTest, F11FillsTheScreenAndEscapeFreesTheMouseThenEndsTheGame) {
    const test::TemporaryFolder folder;
    test::makeRedBoxProject(folder / "game");
    QElapsedTimer sinceStart;
    sinceStart.start();
    Session session({.projectDir = QString::fromStdString(folder / "game"), .play = true}, sinceStart);
    PlayWindow window(session);
    window.play();
    const auto* pane = window.findChild<ViewportPane*>();
    ASSERT_TRUE(pumpUntil([&] { return pane->viewport() != nullptr && pane->viewport()->isExposed(); }));
    auto* viewport = pane->viewport();

    window.activateWindow();
    EXPECT_TRUE(pumpUntil([&] { return window.isActiveWindow(); }));
    for (const bool wanted : {true, false}) {
        // Before the compositor has answered with the size, Qt does not ask it for the opposite.
        EXPECT_TRUE(pumpUntil([&] {
            if (window.isActiveWindow() && window.isFullScreen() != wanted)
                QTest::keyClick(window.windowHandle(), Qt::Key_F11);
            return window.isFullScreen() == wanted && (window.size() == window.screen()->size()) == wanted;
        })) << wanted;
    }

    test::Devices devices;
    EXPECT_TRUE(pumpUntil([&] {
        devices.press();
        return viewport->input().isHeld(MouseButton::Right);
    }));
    // Locked, the pointer stays however the mouse is moved.
    glm::vec2 place(-1.0F);
    int stayed = 0;
    EXPECT_TRUE(pumpUntil([&] {
        devices.moveBy(2, 0);
        stayed = std::exchange(place, viewport->input().mousePosition()) == place ? stayed + 1 : 0;
        return stayed == 20;
    }));
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(viewport->input().isHeld(MouseButton::Right));
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(pumpUntil([&] {
        devices.moveBy(2, 0);
        return viewport->input().mousePosition() != place;
    }));
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

} // namespace tarvik::editor
