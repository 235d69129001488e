#include "Pump.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/core/Log.hpp>

#include <gtest/gtest.h>

#include <QThread>

#include <algorithm>
#include <map>
#include <thread>

namespace tarvik::app {
namespace {

TEST(LogBridge, KeepsEveryTextOfTheLast5000AndRoundsTimesTowardsZero) {
    // Texts, what is shown of them, nanoseconds and what they are in milliseconds.
    const std::tuple<std::string, QString, std::int64_t, std::int64_t> cases[] = {
        {"a\xFFz\xC3", QString::fromUtf8("a\uFFFDz\uFFFD"), -1'999'999, -1},
        {std::string("a\0b", 3), QString(QLatin1String("a\0b", 3)), 1'700'000'000'123'999'999,
         1'700'000'000'123},
        {std::string(3'000'000, 'x'), QString(3'000'000, 'x'), 999'999, 0},
    };
    LogBridge bridge;
    for (const auto& [text, shown, nanoseconds, milliseconds] : cases) {
        bridge.push({LogLevel::Error, text, text, nanoseconds});
        const UiLogEntry entry = bridge.history().back();
        EXPECT_TRUE(entry.message == shown && entry.category == shown) << text.substr(0, 20);
        EXPECT_EQ(entry.time, QDateTime::fromMSecsSinceEpoch(milliseconds));
    }
    for (int i = 1; i <= 5000; ++i)
        bridge.push({LogLevel::Info, "Test", std::to_string(i), 0});
    EXPECT_EQ(bridge.history().size(), 5000U);
    EXPECT_EQ(bridge.history().front().message, "1") << "the oldest lines are dropped";
}

TEST(LogBridge, ReceiverMayUseTheBridgeAndLogAboutEveryLine) {
    const AppContext context({});
    LogBridge& bridge = *context.logBridge;
    std::map<QString, int> seen;
    QObject::connect(&bridge, &LogBridge::messageLogged, &bridge, [&](const UiLogEntry& entry) {
        EXPECT_EQ(bridge.history().back().message, entry.message);
        bridge.clearHistory();
        ++seen[entry.category];
        log::info("Echo", "{}", entry.message.toStdString());
    });
    log::info("Test", "line");
    EXPECT_EQ(seen["Test"], 1);
    EXPECT_GE(seen["Echo"], 1);
}

TEST(LogBridge, LinesOfEachThreadStayInOrderForQueuedReceivers) {
    constexpr std::size_t lineCount = 1000;
    const AppContext context({});
    LogBridge& bridge = *context.logBridge;
    std::vector<UiLogEntry> delivered;
    QObject receiver;
    QObject::connect(&bridge, &LogBridge::messageLogged, &receiver, [&](const UiLogEntry& entry) {
        EXPECT_EQ(QThread::currentThread(), receiver.thread());
        delivered.push_back(entry);
    });
    std::vector<std::jthread> threads;
    for (const char* name : {"a", "b", "c", "d"})
        threads.emplace_back([name] {
            for (std::size_t i = 0; i < lineCount; ++i)
                log::info(name, "{:04}", i);
        });
    // The history is read while it is written.
    EXPECT_TRUE(test::pumpUntil(
        [&] { return bridge.history().size() == 4 * lineCount && delivered.size() == 4 * lineCount; }));
    threads.clear();

    std::map<QString, std::vector<QString>> lines;
    for (const UiLogEntry& entry : delivered)
        lines[entry.category].push_back(entry.message);
    for (const auto& [thread, messages] : lines)
        EXPECT_TRUE(std::ranges::is_sorted(messages)) << thread.toStdString();
}

} // namespace
} // namespace tarvik::app
