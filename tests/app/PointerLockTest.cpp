#include "IdleClient.hpp"
#include "Mouse.hpp"
#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/app/WaylandPointerLock.hpp>

#include <gtest/gtest.h>

#include <QApplication>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include <array>
#include <functional>
#include <memory>
#include <utility>

namespace tarvik::app {
namespace {

using test::Mouse;
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
class PointerLockTest : public ::testing::Test {
protected:
    PointerLockTest() {
        window_->setCentralWidget(container_);
        show();
    }

    void show() {
        QCoreApplication::processEvents(); // until then what has been hidden is exposed
        mouse_->isDevice() ? window_->show() : window_->showFullScreen();
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

    // And holds.
    void pressUntil(const std::function<bool()>& pressed) {
        // A compositor shows a new window some time after it has been drawn.
        ASSERT_TRUE(pumpUntil([&] {
            mouse_->moveTo(600, 400);
            mouse_->moveTo(601, 401);
            mouse_->button(Mouse::Button::Up);
            mouse_->button(Mouse::Button::Down);
            return pressed();
        }));
    }

    void lock() {
        ASSERT_NE(lock_, nullptr);
        const int before = view_->presses;
        pressUntil([&] {
            view_->update(); // what it paints while its top level waits for a frame is dropped
            return view_->presses > before;
        });
        ASSERT_TRUE(lock_->lock());
        ASSERT_TRUE(pumpUntil([&] { return lock_->isActive(); }));
    }

    void expectMoves() {
        view_->moves = 0;
        EXPECT_TRUE(pumpUntil([&] {
            mouse_->moveBy(1, 1);
            return view_->moves > 0;
        }));
    }

    std::unique_ptr<Mouse> mouse_ = std::make_unique<Mouse>();
    std::unique_ptr<WaylandPointerLock> lock_ = WaylandPointerLock::create();
    std::unique_ptr<QMainWindow> window_ = std::make_unique<QMainWindow>();
    View* view_ = new View;
    QWidget* container_ = QWidget::createWindowContainer(view_);
};

TEST_F(PointerLockTest, DeliversAllMotionAndNoMoves) {
    lock();
    view_->moves = 0;
    for (int i = 0; i < 12; ++i)
        mouse_->moveBy(i % 2 ? 6 : -2, -3);
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

TEST_F(PointerLockTest, AsksOnceWhoeverAsks) {
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

TEST_F(PointerLockTest, EndsWithFocusMouseOrWindowAndCanBeHadAgain) {
    std::unique_ptr<QMainWindow> other;
    const std::array<std::function<void()>, 6> ends{
        [&] { (other = std::make_unique<QMainWindow>())->show(); },
        [&] { mouse_->isDevice() ? mouse_.reset() : container_->hide(); },
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
        if (!mouse_)
            mouse_ = std::make_unique<Mouse>();
        if (window_)
            show();
    }
    EXPECT_FALSE(lock_->lock()) << "no window is under the pointer";
}

struct Looker final : bench::IdleClient {
    glm::vec2 motion{0.0F};
    float scroll = 0.0F;
    void update(float /*dt*/, const InputState& input, bool /*windowActive*/) override {
        motion += input.mouseDelta();
        scroll += input.scroll();
    }
};

TEST_F(PointerLockTest, TurnsAViewportThatMayGoWhileLooking) {
    AppContext context{AppOptions{}};
    Looker client;
    auto* viewport = new VulkanViewport(context, client);
    auto* container = QWidget::createWindowContainer(viewport);
    viewport->setInputContainer(container);
    window_->setCentralWidget(container);
    const auto look = [&] {
        pressUntil([&] { return viewport->input().isHeld(MouseButton::Right); });
        // Until the view turns and the pointer stays.
        glm::vec2 place(-1.0F);
        glm::vec2 motion = client.motion;
        EXPECT_TRUE(pumpUntil([&] {
            mouse_->moveBy(2, 0);
            return std::exchange(place, viewport->input().mousePosition()) == place &&
                   std::exchange(motion, client.motion) != motion;
        }));
    };
    look();
    const float notches = mouse_->scroll();
    EXPECT_TRUE(pumpUntil([&] { return client.scroll == notches; })) << client.scroll;
    client.motion = {};
    for (int i = 0; i < 10; ++i)
        mouse_->moveBy(0, -4);
    const float injected = -40.0F / static_cast<float>(viewport->devicePixelRatio());
    EXPECT_TRUE(pumpUntil([&] { return client.motion.y == injected; })) << client.motion.y;
    viewport->releaseInput();
    const glm::vec2 place = viewport->input().mousePosition();
    EXPECT_TRUE(pumpUntil([&] {
        mouse_->moveBy(2, 0);
        return viewport->input().mousePosition() != place;
    }));
    look();
    window_.reset();
    QMainWindow other;
    other.show();
    EXPECT_TRUE(pumpUntil([&] { return other.windowHandle()->isExposed(); }));
}

// Run against compositors that have but one of the protocols.
TEST(NoPointerLockTest, WithHalfOfTheProtocols) {
    EXPECT_EQ(WaylandPointerLock::create(), nullptr);
}

} // namespace
} // namespace tarvik::app
