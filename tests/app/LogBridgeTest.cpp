#include "Support.hpp"

#include <tarvik/app/LogBridge.hpp>
#include <tarvik/core/Log.hpp>

#include <gtest/gtest.h>

#include <QThread>

#include <array>
#include <map>
#include <numeric>
#include <thread>

namespace tarvik::app {
namespace {

using testing::pumpUntil;

LogMessage line(std::string text, std::int64_t time = 0) {
    return {LogLevel::Info, "Test", std::move(text), time};
}

TEST(LogBridge, HistoryDropsTheOldestLineAndClearsSilently) {
    LogBridge bridge;
    for (std::size_t i = 0; i <= LogBridge::kHistory; ++i)
        bridge.push(line(std::to_string(i)));
    const auto history = bridge.history();
    ASSERT_EQ(history.size(), 5000U);
    EXPECT_EQ(history.front().message, "1");
    EXPECT_EQ(history.back().message, "5000");

    int announced = 0;
    QObject::connect(&bridge, &LogBridge::messageLogged, &bridge, [&] { ++announced; });
    bridge.clearHistory();
    EXPECT_TRUE(bridge.history().empty());
    EXPECT_EQ(announced, 0);
}

TEST(LogBridge, KeepsEveryTextAndRoundsTimesTowardsZero) {
    const QString replacement(QChar::ReplacementCharacter);
    struct Case {
        std::string text;
        QString shown;
        std::int64_t nanoseconds;
        std::int64_t milliseconds;
    };
    const std::array cases = {
        Case{"Gr\xC3\xBC\xC3\x9F"
             "e",
             QStringLiteral("Grüße"), 1'999'999, 1},
        Case{"a\xFF"
             "b\xC3",
             "a" + replacement + "b" + replacement, -1'999'999, -1},
        Case{std::string("a\0b", 3), QString(QLatin1String("a\0b", 3)), 999'999, 0},
        Case{std::string(3'000'000, 'x') + "end", QString(3'000'000, 'x') + "end", 1'700'000'000'123'456'789,
             1'700'000'000'123},
        Case{"", "", 0, 0},
    };
    LogBridge bridge;
    for (const Case& c : cases) {
        bridge.push({LogLevel::Error, c.text.substr(0, 100), c.text, c.nanoseconds});
        const UiLogEntry entry = bridge.history().back();
        EXPECT_TRUE(entry.message == c.shown) << c.text.substr(0, 20);
        EXPECT_EQ(entry.category, c.shown.left(entry.category.size()));
        EXPECT_EQ(entry.level, LogLevel::Error);
        EXPECT_EQ(entry.time.toMSecsSinceEpoch(), c.milliseconds);
        EXPECT_EQ(entry.time.timeSpec(), Qt::LocalTime);
    }
}

TEST(LogBridge, DirectReceiverMaySeeAndClearTheHistory) {
    LogBridge bridge;
    std::size_t seen = 0;
    QObject::connect(&bridge, &LogBridge::messageLogged, &bridge, [&](const UiLogEntry& entry) {
        seen += static_cast<std::size_t>(bridge.history().back().message == entry.message);
        bridge.clearHistory();
    });
    bridge.push(line("one"));
    bridge.push(line("two"));
    EXPECT_EQ(seen, 2U);
    EXPECT_TRUE(bridge.history().empty());
}

TEST(LogBridge, ReceiverThatLogsAboutEveryLineEnds) {
    LogBridge bridge;
    const auto sink = std::make_shared<QtLogSink>(bridge);
    Logger::instance().addSink(sink);
    QObject::connect(&bridge, &LogBridge::messageLogged, &bridge,
                     [](const UiLogEntry& entry) { log::info("Echo", "{}", entry.message.toStdString()); });
    log::info("Test", "first");
    log::info("Test", "second");
    Logger::instance().removeSink(sink);
    log::info("Test", "after removal");

    std::map<QString, int> lines;
    for (const UiLogEntry& entry : bridge.history())
        ++lines[entry.category + ": " + entry.message];
    EXPECT_EQ(lines["Test: first"], 1);
    EXPECT_EQ(lines["Test: second"], 1);
    EXPECT_GE(lines["Echo: second"], 1);
    EXPECT_EQ(lines.size(), 4U);
}

TEST(LogBridge, LinesOfEachThreadStayInOrderForQueuedReceivers) {
    constexpr int threadCount = 4;
    constexpr int lineCount = 1000;
    LogBridge bridge;
    const auto sink = std::make_shared<QtLogSink>(bridge);
    Logger::instance().addSink(sink);

    std::array<std::vector<int>, threadCount> delivered;
    std::size_t deliveries = 0;
    bool onOwnThread = true;
    QObject receiver;
    QObject::connect(&bridge, &LogBridge::messageLogged, &receiver, [&](const UiLogEntry& entry) {
        onOwnThread = onOwnThread && QThread::currentThread() == receiver.thread();
        const auto parts = entry.message.split(' ');
        delivered.at(static_cast<std::size_t>(parts[0].toInt())).push_back(parts[1].toInt());
        ++deliveries;
    });

    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < lineCount; ++i)
                log::info("Test", "{} {}", thread, i);
        });
    }
    EXPECT_TRUE(pumpUntil([&] {
        EXPECT_LE(bridge.history().size(), LogBridge::kHistory); // read while it is written
        return deliveries == threadCount * lineCount;
    }));
    for (std::thread& thread : threads)
        thread.join();
    Logger::instance().removeSink(sink);

    EXPECT_TRUE(onOwnThread);
    std::array<std::vector<int>, threadCount> kept;
    for (const UiLogEntry& entry : bridge.history()) {
        const auto parts = entry.message.split(' ');
        kept.at(static_cast<std::size_t>(parts[0].toInt())).push_back(parts[1].toInt());
    }
    std::vector<int> expected(lineCount);
    std::iota(expected.begin(), expected.end(), 0);
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        EXPECT_EQ(delivered.at(thread), expected) << "thread " << thread;
        EXPECT_EQ(kept.at(thread), expected) << "thread " << thread;
    }
}

} // namespace
} // namespace tarvik::app
