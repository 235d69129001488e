#include <tarvik/core/Log.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <latch>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tarvik {
namespace {

class FunctionSink final : public LogSink {
public:
    explicit FunctionSink(std::function<void(const LogMessage&)> function) : function_(std::move(function)) {}
    void write(const LogMessage& msg) override { function_(msg); }

private:
    std::function<void(const LogMessage&)> function_;
};

std::shared_ptr<LogSink> addSink(std::function<void(const LogMessage&)> function) {
    auto sink = std::make_shared<FunctionSink>(std::move(function));
    Logger::instance().addSink(sink);
    return sink;
}

void logLine() {
    Logger::instance().log(LogLevel::Info, "Test", "line");
}

TEST(LoggerTest, SinkIsNeverCalledAfterItsRemovalWhileOtherThreadsLog) {
    std::atomic<bool> stop = false;
    std::atomic<int> callsAfterRemoval = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            while (!stop)
                logLine();
        });
    std::vector<std::jthread> removers;
    for (int i = 0; i < 2; ++i)
        removers.emplace_back([&] {
            for (int round = 0; round < 300; ++round) {
                // Not atomic: a call that removeSink does not wait for is a data race too.
                auto called = std::make_unique<int>(0);
                auto removed = std::make_unique<std::atomic<bool>>(false);
                std::mutex mutex;
                const auto sink = addSink([&](const LogMessage&) {
                    const std::lock_guard lock(mutex);
                    ++*called;
                    callsAfterRemoval += *removed ? 1 : 0;
                });
                logLine();
                Logger::instance().removeSink(sink);
                *removed = true;
                EXPECT_GE(*called, 1);
            }
        });
    removers.clear();
    stop = true;
    threads.clear();
    EXPECT_EQ(callsAfterRemoval, 0);
}

TEST(LoggerTest, SinkRemovedWhileALineIsOnItsWayDoesNotGetIt) {
    std::latch entered(1);
    std::latch release(1);
    std::atomic<int> lines = 0;
    const auto slow = addSink([&](const LogMessage&) {
        entered.count_down();
        release.wait();
    });
    const auto removed = addSink([&](const LogMessage&) { ++lines; });
    {
        std::jthread logging(logLine);
        entered.wait();
        Logger::instance().removeSink(removed);
        release.count_down();
    }
    EXPECT_EQ(lines, 0);
    Logger::instance().removeSink(slow);
}

TEST(LoggerTest, EveryRemoverWaitsForTheRunningCall) {
    for (int round = 0; round < 100; ++round) {
        std::latch entered(1);
        std::latch release(1);
        std::atomic<bool> running = false;
        const auto sink = addSink([&](const LogMessage&) {
            running = true;
            entered.count_down();
            release.wait();
            running = false;
        });
        std::jthread logging(logLine);
        entered.wait();
        std::latch begun(2);
        const auto remove = [&] {
            begun.count_down();
            Logger::instance().removeSink(sink);
            EXPECT_FALSE(running);
        };
        std::jthread first(remove);
        std::jthread second(remove);
        begun.wait();
        release.count_down();
    }
}

TEST(LoggerTest, SinkMayRemoveItselfFromSeveralCallsAtOnce) {
    std::latch inside(3);
    std::atomic<int> calls = 0;
    std::shared_ptr<LogSink> sink;
    sink = addSink([&](const LogMessage&) {
        ++calls;
        inside.arrive_and_wait(); // each of the three calls is running when the first removes
        Logger::instance().removeSink(sink);
    });
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back(logLine);
        inside.wait();
        Logger::instance().removeSink(sink); // and somebody outside does as well
    }
    logLine();
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(sink.use_count(), 1) << "the logger keeps a sink that removed itself";
}

TEST(LoggerTest, SinkMayWaitForAThreadThatLogs) {
    std::atomic<int> lines = 0;
    std::atomic<bool> first = true;
    const auto sink = addSink([&](const LogMessage&) {
        ++lines;
        if (first.exchange(false))
            std::jthread(logLine).join();
    });
    logLine();
    Logger::instance().removeSink(sink);
    EXPECT_EQ(lines, 2);
}

TEST(LoggerTest, SinksThatLogAboutEveryLineEnd) {
    int eager = 0;
    int quiet = 0;
    const auto eagerSink = addSink([&](const LogMessage&) {
        ++eager;
        logLine();
    });
    const auto quietSink = addSink([&](const LogMessage&) { ++quiet; });
    logLine();
    EXPECT_GT(eager, 1);
    EXPECT_LE(eager, 8);
    EXPECT_EQ(quiet, eager) << "a line logged by one sink reaches the others";
    const int lines = quiet;
    logLine();
    EXPECT_EQ(quiet, 2 * lines) << "the depth counts anew for each line";
    Logger::instance().removeSink(eagerSink);
    Logger::instance().removeSink(quietSink);
}

TEST(LoggerTest, SinkThatThrowsHarmsNobody) {
    int lines = 0;
    const auto throwing = addSink([](const LogMessage&) { throw std::runtime_error("sink"); });
    const auto after = addSink([&](const LogMessage&) { ++lines; });
    EXPECT_NO_THROW(logLine());
    EXPECT_NO_THROW(logLine());
    Logger::instance().removeSink(throwing); // hangs if the calls that threw still count as running
    Logger::instance().removeSink(after);
    EXPECT_EQ(lines, 2);
}

TEST(LoggerTest, RemovalReleasesTheSinkWhoseDestructorMayLog) {
    struct LoggingSink final : LogSink {
        ~LoggingSink() override { logLine(); }
        void write(const LogMessage&) override {}
    };
    int lines = 0;
    const auto other = addSink([&](const LogMessage&) { ++lines; });
    std::shared_ptr<LogSink> sink = std::make_shared<LoggingSink>();
    Logger::instance().addSink(sink);
    Logger::instance().addSink(sink);
    const std::weak_ptr<LogSink> watched = sink;
    Logger::instance().removeSink(std::exchange(sink, nullptr));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(lines, 1);
    Logger::instance().removeSink(other);
}

TEST(LoggerTest, HelpersFormatOnlyWhatPassesTheThreshold) {
    std::vector<LogMessage> lines;
    const auto sink = addSink([&](const LogMessage& msg) { lines.push_back(msg); });
    log::debug("Test", "{}", "dropped");
    log::warn("Test", "{} of {}", 1, 2);
    Logger::instance().setThreshold(LogLevel::Error);
    log::warn("Test", "dropped");
    Logger::instance().setThreshold(LogLevel::Info);
    Logger::instance().removeSink(sink);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].message, "1 of 2");
    EXPECT_EQ(lines[0].level, LogLevel::Warn);
    EXPECT_GT(lines[0].time, 1'700'000'000'000'000'000);
}

} // namespace
} // namespace tarvik
