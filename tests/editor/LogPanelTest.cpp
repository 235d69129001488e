#include "LogPanel.hpp"

#include "Support.hpp"

#include <tarvik/app/LogBridge.hpp>

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace tarvik::editor {
namespace {

using app::LogBridge;
using testing::pumpUntil;

struct PanelUnderTest {
    LogBridge bridge;
    std::unique_ptr<LogPanel> panel = std::make_unique<LogPanel>();

    PanelUnderTest() {
        panel->attach(bridge);
        panel->resize(800, 300);
        panel->show();
    }
    void log(LogLevel level, const std::string& text) { bridge.push({level, "Test", text, 0}); }
    [[nodiscard]] QTableView& table() const { return *panel->findChild<QTableView*>(); }
    [[nodiscard]] int rows() const { return table().model()->rowCount(); }
    [[nodiscard]] QString message(int row) const { return table().model()->index(row, 3).data().toString(); }
};

TEST(LogPanelTest, AFloodFromThreadsLeavesTheWindowResponsiveAndTheTableBounded) {
    constexpr int kThreads = 4;
    constexpr int kLinesEach = 25'000;
    PanelUnderTest test;
    std::atomic<int> running = kThreads;
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &tick,
                     [&] { longest = std::max(longest, sinceTick.restart()); });
    tick.start(1);
    sinceTick.start();

    std::vector<std::jthread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&test, &running, t] {
            for (int i = 0; i < kLinesEach; ++i)
                test.log(LogLevel::Info, std::to_string(t) + ":" + std::to_string(i));
            --running;
        });
    }
    ASSERT_TRUE(pumpUntil([&] { return running == 0; }));
    threads.clear();
    test.log(LogLevel::Info, "last");
    ASSERT_TRUE(pumpUntil([&] { return test.rows() > 0 && test.message(test.rows() - 1) == "last"; }));

    EXPECT_EQ(test.rows(), static_cast<int>(LogBridge::kHistory));
    // Queued one by one, the lines would hold the event loop for seconds.
    EXPECT_LT(longest, 500);
    RecordProperty("longestTickMs", static_cast<int>(longest));
}

TEST(LogPanelTest, MayBeDestroyedWhileOthersLog) {
    PanelUnderTest test;
    std::atomic<bool> stop = false;
    const std::jthread logging([&] {
        while (!stop)
            test.log(LogLevel::Info, "line");
    });
    for (int i = 0; i < 50; ++i) {
        test.panel = std::make_unique<LogPanel>();
        test.panel->attach(test.bridge);
    }
    test.panel.reset();
    stop = true;
}

TEST(LogPanelTest, ShowsWhatWasLoggedBeforeAndKeepsItWhenTheBridgeIsReplaced) {
    LogBridge next;
    next.push({LogLevel::Info, "Test", "second", 0});
    PanelUnderTest test;
    test.log(LogLevel::Info, "first");
    test.panel->attach(next);
    test.log(LogLevel::Info, "from the old bridge");
    next.push({LogLevel::Info, "Test", "third", 0});
    ASSERT_TRUE(pumpUntil([&] { return test.rows() >= 3; }));
    EXPECT_EQ(test.rows(), 3);
    EXPECT_EQ(test.message(0), "first");
    EXPECT_EQ(test.message(1), "second");
    EXPECT_EQ(test.message(2), "third");
}

TEST(LogPanelTest, FiltersByLevelAndTextAndCopiesWhatIsShown) {
    PanelUnderTest test;
    test.log(LogLevel::Info, "red apple");
    test.log(LogLevel::Error, "red\nbrick");
    test.log(LogLevel::Warn, "blue sky");
    ASSERT_TRUE(pumpUntil([&] { return test.rows() == 3; }));

    test.panel->findChild<QComboBox*>()->setCurrentText("Warnings and errors");
    test.panel->findChild<QLineEdit*>()->setText("RED");
    ASSERT_EQ(test.rows(), 1);
    EXPECT_EQ(test.message(0), "red↵brick");

    for (auto* button : test.panel->findChildren<QPushButton*>()) {
        if (button->text().contains("Copy"))
            button->click();
    }
    EXPECT_TRUE(QApplication::clipboard()->text().endsWith("error [Test] red\nbrick"));
}

TEST(LogPanelTest, ScrollingUpEndsFollowingAndOldLinesThatLeaveDoNotMoveTheView) {
    PanelUnderTest test;
    for (std::size_t i = 0; i < LogBridge::kHistory; ++i)
        test.log(LogLevel::Info, std::to_string(i));
    const QTableView& table = test.table();
    ASSERT_TRUE(pumpUntil([&] { return test.rows() == static_cast<int>(LogBridge::kHistory); }));
    QScrollBar& bar = *table.verticalScrollBar();
    ASSERT_TRUE(pumpUntil([&] { return bar.maximum() > 0 && bar.value() == bar.maximum(); }));

    for (int page = 0; page < 10; ++page)
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    const QString top = table.indexAt({0, 0}).siblingAtColumn(3).data().toString();
    for (int i = 0; i < 100; ++i)
        test.log(LogLevel::Info, "more");
    ASSERT_TRUE(pumpUntil([&] { return test.message(test.rows() - 1) == "more"; }));
    EXPECT_EQ(table.indexAt({0, 0}).siblingAtColumn(3).data().toString(), top);
}

// Laid out whole, such a line would take seconds at every repaint.
TEST(LogPanelTest, AVeryLongLineIsShownAbridged) {
    PanelUnderTest test;
    test.log(LogLevel::Info, QByteArray(10'000'000, 'x').toStdString());
    ASSERT_TRUE(pumpUntil([&] { return test.rows() == 1; }));
    EXPECT_LT(test.message(0).size(), 2000);
}

} // namespace
} // namespace tarvik::editor
