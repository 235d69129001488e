#include "Client.hpp"
#include "Devices.hpp"
#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/app/WaylandPointerLock.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::app {
namespace {

using test::Devices;
using test::pumpUntil;

// Fills itself, as a window without contents gets no pointer, and counts.
struct View final : QRasterWindow {
    int moves = 0;
    int presses = 0;
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).fillRect(QRect(QPoint(), size()), Qt::darkGray);
    }
    void mouseMoveEvent(QMouseEvent* /*event*/) override { ++moves; }
    void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

// An embedded window that fills its top level, which fills the screen. A protocol error ends the process.
class WaylandInputTest : public ::testing::Test {
protected:
    WaylandInputTest() {
        window_->setCentralWidget(container_);
        show();
    }

    void show() {
        QCoreApplication::processEvents(); // until then what has been hidden is exposed
        devices_->areVirtual() ? window_->show() : window_->showFullScreen();
        ASSERT_TRUE(pumpUntil([&] { return window_->windowHandle()->isExposed(); }));
        // Wakes an embedded window that was not exposed with its top level; in vain while that waits for a
        // late picture.
        ASSERT_TRUE(pumpUntil([&] {
            container_->hide();
            QCoreApplication::processEvents();
            container_->show();
            QCoreApplication::processEvents();
            return view_->isExposed();
        }));
    }

    void lock() {
        ASSERT_NE(lock_, nullptr);
        const int before = view_->presses;
        ASSERT_TRUE(pumpUntil([&] {
            view_->update(); // what it paints while its top level waits for a frame is dropped
            devices_->press();
            return view_->presses > before;
        }));
        ASSERT_TRUE(lock_->lock());
        ASSERT_TRUE(pumpUntil([&] { return lock_->isActive(); }));
    }

    VulkanViewport* embedViewport() {
        auto* viewport = new VulkanViewport(context_, client_);
        auto* container = QWidget::createWindowContainer(viewport);
        viewport->setInputContainer(container);
        window_->setCentralWidget(container); // in place of the view
        return viewport;
    }

    void expectMoves() {
        view_->moves = 0;
        EXPECT_TRUE(pumpUntil([&] {
            devices_->moveBy(1, 1);
            return view_->moves > 0;
        }));
    }

    AppContext context_{AppOptions{}};
    test::Client client_;
    std::unique_ptr<Devices> devices_ = std::make_unique<Devices>();
    std::unique_ptr<WaylandPointerLock> lock_ = WaylandPointerLock::create();
    std::unique_ptr<QMainWindow> window_ = std::make_unique<QMainWindow>();
    View* view_ = new View;
    QWidget* container_ = QWidget::createWindowContainer(view_);
};

TEST_F(WaylandInputTest, DeliversAllMotionAndNoMoves) {
    lock();
    view_->moves = 0;
    for (int i = 0; i < 12; ++i)
        devices_->moveBy(i % 2 ? 6 : -2, -3);
    const glm::vec2 injected = glm::vec2(24, -36) / static_cast<float>(view_->devicePixelRatio());
    glm::vec2 sum(0.0F);
    pumpUntil([&] {
        sum += lock_->takeMotion();
        return sum.y <= injected.y;
    });
    EXPECT_EQ(sum, injected);
    EXPECT_EQ(view_->moves, 0);

    lock_->unlock();
    expectMoves();
    EXPECT_EQ(lock_->takeMotion(), glm::vec2(0.0F));
    lock();
    lock_.reset();
    expectMoves();
}

TEST_F(WaylandInputTest, AsksOnceWhoeverAsks) {
    lock();
    EXPECT_TRUE(lock_->lock());
    const auto other = WaylandPointerLock::create();
    EXPECT_TRUE(other->lock());
    EXPECT_FALSE(lock_->isActive());
    EXPECT_TRUE(pumpUntil([&] { return other->isActive(); }));
    lock_->unlock();
    lock_->unlock();
    EXPECT_TRUE(other->isActive());
}

TEST_F(WaylandInputTest, EndsWithFocusMouseOrWindowAndCanBeHadAgain) {
    std::unique_ptr<QMainWindow> other;
    const std::array<std::function<void()>, 6> ends{
        [&] { (other = std::make_unique<QMainWindow>())->show(); },
        [&] { devices_->areVirtual() ? devices_.reset() : container_->hide(); },
        [&] { container_->hide(); },
        [&] { view_->destroy(); },
        [&] { window_->hide(); },
        [&] { window_.reset(); },
    };
    for (const auto& end : ends) {
        SCOPED_TRACE(&end - ends.data());
        lock();
        if (HasFatalFailure())
            return;
        end();
        EXPECT_TRUE(pumpUntil([&] { return !lock_->isActive(); }));
        other.reset();
        if (!devices_)
            devices_ = std::make_unique<Devices>();
        if (window_)
            show();
    }
    EXPECT_FALSE(lock_->lock()) << "no window is under the pointer";
}

TEST_F(WaylandInputTest, TurnsAViewportThatMayGoWhileLooking) {
    auto* viewport = embedViewport();
    const auto look = [&] {
        ASSERT_TRUE(pumpUntil([&] {
            devices_->press();
            return viewport->input().isHeld(MouseButton::Right);
        }));
        // Until the view turns and the pointer stays. The first turn may come of the last move before.
        glm::vec2 place(-1.0F);
        glm::vec2 motion = client_.motion;
        int turns = 0;
        EXPECT_TRUE(pumpUntil([&] {
            devices_->moveBy(2, 0);
            const bool turned = std::exchange(motion, client_.motion) != motion;
            const bool stays = std::exchange(place, viewport->input().mousePosition()) == place;
            turns = stays ? turns + turned : 0;
            return turns == 2;
        }));
    };
    look();
    const float notches = devices_->scroll();
    EXPECT_TRUE(pumpUntil([&] { return client_.scroll == notches; })) << client_.scroll;
    client_.motion = {};
    for (int i = 0; i < 10; ++i)
        devices_->moveBy(0, -4);
    const float injected = -40.0F / static_cast<float>(viewport->devicePixelRatio());
    EXPECT_TRUE(pumpUntil([&] { return client_.motion.y == injected; })) << client_.motion.y;
    viewport->releaseInput();
    const glm::vec2 place = viewport->input().mousePosition();
    EXPECT_TRUE(pumpUntil([&] {
        devices_->moveBy(2, 0);
        return viewport->input().mousePosition() != place;
    }));
    look();
    window_.reset();
    QMainWindow other;
    other.show();
    EXPECT_TRUE(pumpUntil([&] { return other.windowHandle()->isExposed(); }));
}

// Most compositors send keys to the top level and never to the window that is embedded in it.
TEST_F(WaylandInputTest, AnEngagedViewportHoldsItsKeysUntilTheFocusGoes) {
    using Key = Devices::Key;
    auto* viewport = embedViewport();
    auto* edit = new QLineEdit;
    window_->setMenuWidget(edit);
    std::vector<std::string> fired;
    for (const char* keys : {"W", "Ctrl+S"})
        window_->addAction(keys, QKeySequence(keys), edit, [&fired, keys] { fired.emplace_back(keys); });
    const auto expectHeld = [&](bool held) {
        EXPECT_TRUE(pumpUntil([&] { return viewport->input().isHeld(tarvik::Key::W) == held; })) << held;
    };
    ASSERT_TRUE(pumpUntil([&] {
        devices_->enter();
        return window_->isActiveWindow() && viewport->input().mousePosition() != glm::vec2(0.0F);
    }));
    edit->setFocus();
    devices_->press(Key::W);
    EXPECT_TRUE(pumpUntil([&] { return edit->text() == "w"; }));
    EXPECT_FALSE(viewport->input().isHeld(tarvik::Key::W));
    devices_->release(Key::W);

    devices_->press();
    devices_->release();
    EXPECT_TRUE(pumpUntil([&] { return !edit->hasFocus(); }));
    devices_->press(Key::W);
    expectHeld(true);
    devices_->release(Key::W);
    expectHeld(false);
    for (const Key key : {Key::Control, Key::S})
        devices_->press(key);
    for (const Key key : {Key::S, Key::Control})
        devices_->release(key);
    EXPECT_TRUE(pumpUntil([&] { return !fired.empty(); }));
    EXPECT_EQ(fired, std::vector<std::string>{"Ctrl+S"});

    edit->clear();
    edit->setFocus();
    devices_->press(Key::W);
    EXPECT_TRUE(pumpUntil([&] { return !edit->text().isEmpty(); })) << "keys stay where they are sent";
    devices_->release(Key::W);
    edit->clearFocus();

    devices_->press(Key::W);
    expectHeld(true);
    QWidget other;
    other.show();
    expectHeld(false);
    devices_->release(Key::W);
}

// Run against compositors that have but one of the protocols.
TEST(NoPointerLockTest, WithHalfOfTheProtocols) {
    EXPECT_EQ(WaylandPointerLock::create(), nullptr);
}

} // namespace
} // namespace tarvik::app
