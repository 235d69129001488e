#include "Client.hpp"
#include "Pump.hpp"
#include "Script.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <QApplication>
#include <QDialog>
#include <QDrag>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QWheelEvent>

#include <cmath>
#include <functional>

namespace tarvik::app {
namespace {

using scripted::script;
using test::pumpUntil;
using Names = std::vector<std::string>;

struct InputClient final : test::Client {
    Names calls;
    std::string failing; // the operation that throws
    bool consumesPress = false;
    std::function<bool()> acceptsDrops;

    void note(const std::string& operation, const std::string& details) {
        calls.push_back(operation + details);
        if (operation == failing)
            throw std::runtime_error("no");
    }
    void note(const std::string& operation, glm::vec2 ndc) {
        // In tenths, to which the pixels of any scale round.
        note(operation, fmt::format(" {} {}", std::lround(ndc.x * 10.0F), std::lround(ndc.y * 10.0F)));
    }
    void clicked(glm::vec2 ndc) override { note("clicked", ndc); }
    bool mousePressed(glm::vec2 ndc, Qt::MouseButton /*button*/, Qt::KeyboardModifiers /*held*/) override {
        note("pressed", ndc);
        return consumesPress;
    }
    void mouseReleased(glm::vec2 ndc, Qt::MouseButton /*button*/) override { note("released", ndc); }
    bool canDrop(const QList<QUrl>& /*urls*/) override { return acceptsDrops(); }
    void dropped(const QList<QUrl>& urls, glm::vec2 ndc) override {
        note(fmt::format("dropped {}", urls.size()), ndc);
    }
    bool keyPressed(int key, Qt::KeyboardModifiers /*held*/) override {
        note("key ", QKeySequence(key).toString().toStdString());
        return false;
    }
};

// Real events of the X server for an embedded viewport, with a text field and a button beside it and another
// window. Positions are in logical pixels, in the viewport unless said otherwise.
class ViewportInputTest : public ::testing::Test {
protected:
    ViewportInputTest() {
        script() = {};
        hand_.start("xdotool", {"-"});
        EXPECT_TRUE(hand_.waitForStarted()) << hand_.errorString().toStdString();
        // Multiples of four are whole pixels at a scale of 1.25, too.
        window_.setGeometry(32, 32, 400, 400);
        edit_.setGeometry(0, 0, 400, 40);
        button_.setGeometry(0, 352, 400, 48);
        other_.setGeometry(500, 32, 200, 200);
        make();
    }

    ~ViewportInputTest() override {
        act("mouseup 1 mouseup 3 keyup d keyup space keyup w");
        hand_.closeWriteChannel();
        EXPECT_TRUE(hand_.waitForFinished());
    }

    void make() {
        delete container_;
        viewport_ = new VulkanViewport(context_, client_);
        container_ = QWidget::createWindowContainer(viewport_, &window_);
        container_->setGeometry(0, 52, 400, 300);
        viewport_->setInputContainer(container_);
        container_->show();
        other_.show();
        window_.show();
        EXPECT_TRUE(pumpUntil([&] { return viewport_->isExposed() && other_.windowHandle()->isExposed(); }));
        window_.activateWindow();
        button_.setFocus();
        moveTo(other_, {50, 50});
        EXPECT_TRUE(pumpUntil([&] { return button_.hasFocus() && other_.underMouse(); }));
    }

    void act(const std::string& command) {
        hand_.write((command + "\n").c_str());
        hand_.waitForBytesWritten();
    }
    void moveTo(const QWidget& widget, QPoint place) {
        const QPointF pixel = QPointF(widget.mapToGlobal(place)) * widget.devicePixelRatio();
        act(fmt::format("mousemove {} {}", qRound(pixel.x()), qRound(pixel.y())));
    }
    void moveInside(QPoint place = {100, 100}) {
        moveTo(*container_, place);
        EXPECT_TRUE(pumpUntil([&] {
            const glm::vec2 seen = viewport_->input().mousePosition();
            return (QPointF(seen.x, seen.y) - place).manhattanLength() < 1.0;
        }));
    }
    void expectHeld(auto what, bool held) {
        EXPECT_TRUE(pumpUntil([&] { return viewport_->input().isHeld(what) == held; }))
            << static_cast<int>(what);
    }
    [[nodiscard]] bool wasCalled(const std::string& call) const {
        return std::ranges::find(client_.calls, call) != client_.calls.end();
    }

    QProcess hand_;
    AppContext context_{AppOptions{}};
    InputClient client_;
    QWidget window_;
    QWidget other_;
    QLineEdit edit_{&window_};
    QPushButton button_{&window_};
    QWidget* container_ = nullptr;
    VulkanViewport* viewport_ = nullptr; // the container's
};

TEST_F(ViewportInputTest, HoveringTakesKeysExceptFromWhatIsTypedInto) {
    moveInside();
    edit_.setFocus();
    act("key w");
    EXPECT_TRUE(pumpUntil([&] { return edit_.text() == "w"; }));
    EXPECT_FALSE(viewport_->input().wasPressed(Key::W));
    EXPECT_EQ(client_.calls, Names{});

    button_.setFocus();
    act("keydown space key f");
    EXPECT_TRUE(pumpUntil([&] { return wasCalled("key F"); }));
    expectHeld(Key::Space, true);
    EXPECT_FALSE(button_.isDown()) << "a key that moves goes nowhere else";
    moveTo(button_, {5, 5});
    expectHeld(Key::Space, false);
    act("keyup space");
}

TEST_F(ViewportInputTest, AReleaseCountsWhateverHasHappenedSinceThePress) {
    moveInside();
    act("keydown 1 keydown shift keydown w");
    expectHeld(Key::W, true);
    edit_.setFocus();
    act("keyup 1 keyup shift keyup w"); // an exclamation mark goes up
    expectHeld(Key::W, false);
    EXPECT_FALSE(viewport_->input().isHeld(Key::Num1));
}

TEST_F(ViewportInputTest, ShortcutsLoseOnlyTheKeysThatMove) {
    Names fired;
    for (const char* keys : {"W", "F", "Ctrl+S", "Alt+W"})
        window_.addAction(keys, QKeySequence(keys), &window_, [&fired, keys] { fired.push_back(keys); });
    // Hovered with the focus beside it, then with the focus inside
    for (const char* press : {"", "click 2"}) {
        moveInside();
        act(press);
        fired.clear();
        act("key ctrl+s key alt+w key w key f");
        EXPECT_TRUE(pumpUntil([&] { return !fired.empty() && fired.back() == "F"; }));
        EXPECT_EQ(fired, (Names{"Ctrl+S", "Alt+W", "F"}));
    }
    moveTo(button_, {5, 5});
    act("click 1 key w");
    EXPECT_TRUE(pumpUntil([&] { return fired.back() == "W"; }));
}

TEST_F(ViewportInputTest, AClickHoldsTheKeysUntilAClickElsewhere) {
    moveInside();
    act("click 1 keydown d");
    expectHeld(Key::D, true);
    moveTo(button_, {5, 5});
    act("keydown w");
    expectHeld(Key::W, true);
    EXPECT_TRUE(viewport_->input().isHeld(Key::D));
    moveTo(other_, {50, 50});
    act("click 1");
    expectHeld(Key::W, false);
    EXPECT_FALSE(viewport_->input().isHeld(Key::D));
}

TEST_F(ViewportInputTest, NothingStaysHeldWhenTheKeysGoToAnotherWindow) {
    moveInside();
    act("mousedown 3 keydown w");
    expectHeld(Key::W, true);
    EXPECT_EQ(container_->cursor().shape(), Qt::BlankCursor);
    QDialog dialog;
    dialog.setGeometry(500, 300, 100, 100);
    dialog.setModal(true);
    dialog.show();
    EXPECT_TRUE(pumpUntil([&] { return dialog.windowHandle()->isExposed(); }));
    dialog.activateWindow();
    expectHeld(Key::W, false);
    EXPECT_FALSE(viewport_->input().isHeld(MouseButton::Right));
    EXPECT_EQ(container_->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ViewportInputTest, FourPixelsAreAClickAndFiveADrag) {
    // In logical pixels, and whether the client consumes the press.
    for (const auto& [distance, consumed] : {std::pair(0, false), {4, false}, {5, false}, {0, true}}) {
        SCOPED_TRACE(::testing::Message() << distance << ' ' << consumed);
        client_.consumesPress = consumed;
        moveInside({200, 150});
        client_.calls.clear();
        act("mousedown 1");
        EXPECT_TRUE(pumpUntil([&] { return wasCalled("pressed 0 0"); }));
        EXPECT_EQ(viewport_->input().isHeld(MouseButton::Left), !consumed);
        moveInside({200 - distance, 150});
        moveInside({200, 150});
        act("mouseup 1");
        EXPECT_TRUE(pumpUntil([&] { return wasCalled("released 0 0"); }));
        EXPECT_EQ(wasCalled("clicked 0 0"), distance < 5 && !consumed);
        EXPECT_FALSE(viewport_->input().isHeld(MouseButton::Left));
    }
}

TEST_F(ViewportInputTest, LookingFollowsTheHandWithoutDrift) {
    moveInside({200, 150});
    act("mousedown 3");
    expectHeld(MouseButton::Right, true);
    EXPECT_EQ(viewport_->cursor().shape(), Qt::BlankCursor);
    const glm::vec2 start = client_.motion;
    const auto ratio = static_cast<float>(viewport_->devicePixelRatio());
    for (int i = 1; i <= 1000; ++i) {
        act("mousemove_relative 3 1");
        const float far = 3.0F * static_cast<float>(i) / ratio;
        ASSERT_TRUE(pumpUntil([&] { return client_.motion.x - start.x > far - 1.0F; })) << i;
    }
    EXPECT_NEAR(client_.motion.x - start.x, 3000.0F / ratio, 1.0F);
    EXPECT_NEAR(client_.motion.y - start.y, 1000.0F / ratio, 1.0F);

    // Faster than the application looks: what is on its way while the cursor is warped may not throw the
    // view.
    for (int round = 1; round <= 30; ++round) {
        moveInside({247, 150}); // close to where it is warped
        const glm::vec2 before = client_.motion;
        std::string burst;
        for (int i = 0; i < 20; ++i)
            burst += "mousemove_relative 6 0 mousemove_relative -- -6 0 ";
        act(burst + "click 4");
        ASSERT_TRUE(pumpUntil([&] { return client_.scroll == static_cast<float>(round); }));
        ASSERT_NEAR(client_.motion.x - before.x, 0.0F, 10.0F) << round;
    }

    act("mouseup 3");
    expectHeld(MouseButton::Right, false);
    EXPECT_EQ(viewport_->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ViewportInputTest, TheWheelCountsNotchesAndTheirParts) {
    moveInside();
    act("click 4 click 4 click 5");
    EXPECT_TRUE(pumpUntil([&] { return client_.scroll == 1.0F; }));
    QWheelEvent fine({5, 5}, {5, 5}, {}, {50, 30}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport_, &fine);
    EXPECT_EQ(viewport_->input().scroll(), 0.25F);
}

TEST_F(ViewportInputTest, DropsOfFilesAreCopies) {
    for (const bool accepts : {true, false}) {
        SCOPED_TRACE(accepts);
        client_.calls.clear();
        client_.acceptsDrops = [&] {
            QTimer::singleShot(0, &window_, [this] { act("mouseup 1"); });
            return accepts;
        };
        moveTo(other_, {50, 50});
        act("mousedown 1");
        EXPECT_TRUE(pumpUntil([] { return QGuiApplication::mouseButtons() == Qt::LeftButton; }));
        auto* content = new QMimeData;
        content->setUrls({QUrl("file:///a%20b.lscene"), QUrl("file:///c.lscene")});
        auto* drag = new QDrag(&other_);
        drag->setMimeData(content);
        QTimer::singleShot(0, &window_, [this] { moveTo(*container_, {200, 150}); });
        EXPECT_EQ(drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction),
                  accepts ? Qt::CopyAction : Qt::IgnoreAction);
        EXPECT_EQ(client_.calls, accepts ? Names{"dropped 2 0 0"} : Names{});
    }
}

TEST_F(ViewportInputTest, PassThroughHandsOnWhatTheContainerGets) {
    qputenv("TARVIK_POINTER_PASSTHROUGH", "1");
    make();
    qunsetenv("TARVIK_POINTER_PASSTHROUGH");
    edit_.setFocus();
    moveInside({200, 150});
    act("click 1 click 4 mousedown 3 keydown w key f");
    expectHeld(Key::W, true);
    EXPECT_TRUE(viewport_->input().isHeld(MouseButton::Right));
    EXPECT_TRUE(pumpUntil([&] { return client_.scroll == 1.0F && wasCalled("key F"); }));
    EXPECT_EQ(client_.calls, (Names{"pressed 0 0", "released 0 0", "clicked 0 0", "key F"}));
    EXPECT_EQ(edit_.text(), "");
}

TEST_F(ViewportInputTest, EveryKeyHasItsNumber) {
    std::vector<int> keys{'W', 'A', 'S', 'D', 'Q', 'E', 'F'};
    keys.insert(keys.end(), {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space,
                             Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Escape, Qt::Key_Enter,
                             Qt::Key_Tab, Qt::Key_Backspace});
    for (const char key : std::string("BCGHIJKLMNOPRTUVXYZ0123456789"))
        keys.push_back(key);
    const auto send = [&](QEvent::Type type, int key, bool repeated = false) {
        QKeyEvent event(type, key, Qt::NoModifier, {}, repeated);
        QCoreApplication::sendEvent(viewport_, &event);
    };
    for (std::size_t i = 0; i < keys.size(); ++i) {
        send(QEvent::KeyPress, keys.at(i));
        send(QEvent::KeyRelease, keys.at(i), true);
        for (std::size_t j = 0; j < keys.size(); ++j)
            EXPECT_EQ(viewport_->input().isHeld(static_cast<Key>(j)), i == j) << i << ' ' << j;
        send(QEvent::KeyRelease, keys.at(i));
    }
    send(QEvent::KeyPress, Qt::Key_Return);
    EXPECT_TRUE(viewport_->input().isHeld(Key::Enter));
}

TEST_F(ViewportInputTest, WhatAClientThrowsEndsInAReason) {
    for (const char* operation : {"pressed", "released", "clicked", "key "}) {
        SCOPED_TRACE(operation);
        make();
        const QSignalSpy failed(viewport_, &VulkanViewport::renderFailed);
        client_.failing = operation;
        moveInside();
        act("key f click 1");
        EXPECT_TRUE(pumpUntil([&] { return !failed.empty() && !QGuiApplication::mouseButtons(); }));
        EXPECT_EQ(failed.size(), 1);
        EXPECT_EQ(failed.front().front(), "Rendering failed: no");
        button_.setFocus();
        QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(window_.windowHandle(), &space);
        EXPECT_TRUE(button_.isDown()) << "what is blank takes no keys";
        button_.setDown(false);
    }
}

} // namespace
} // namespace tarvik::app
