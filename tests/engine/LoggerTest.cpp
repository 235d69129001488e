#include <tarvik/core/Log.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <latch>
#include <mutex>
#include <stdexcept>
#include <string>
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
    for (int round = 0; round < 500; ++round) {
        int called = 0; // not atomic: a call that removeSink does not wait for is a data race too
        std::atomic<bool> removed = false;
        std::mutex mutex;
        const auto sink = addSink([&](const LogMessage&) {
            const std::lock_guard lock(mutex);
            ++called;
            callsAfterRemoval += removed ? 1 : 0;
        });
        logLine();
        const auto remove = [&] {
            Logger::instance().removeSink(sink);
            removed = true;
        };
        std::jthread other(remove); // neither may return before the last call has
        remove();
        EXPECT_GE(called, 1);
        other.join();
    }
    stop = true;
    threads.clear();
    EXPECT_EQ(callsAfterRemoval, 0);
}

TEST(LoggerTest, SinkMayRemoveItself) {
    int calls = 0;
    std::shared_ptr<LogSink> sink;
    sink = addSink([&](const LogMessage&) {
        ++calls;
        Logger::instance().removeSink(sink);
    });
    logLine();
    logLine();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(sink.use_count(), 1) << "the logger keeps it";
}

TEST(LoggerTest, SinksMayRemoveEachOtherAtOnce) {
    std::latch bothInside(2);
    std::shared_ptr<LogSink> sinks[2];
    for (const int own : {0, 1})
        sinks[own] = addSink([&bothInside, &other = sinks[1 - own], own](const LogMessage& msg) {
            if (msg.message != std::to_string(own))
                return;
            bothInside.arrive_and_wait();
            Logger::instance().removeSink(other);
        });
    std::jthread thread([] { Logger::instance().log(LogLevel::Info, "Test", "0"); });
    Logger::instance().log(LogLevel::Info, "Test", "1"); // hangs if either waits for the other
    thread.join();
    EXPECT_EQ(sinks[0].use_count() + sinks[1].use_count(), 2) << "the logger keeps one";
}

TEST(LoggerTest, SinkThatLogsAboutEveryLineEndsAndReachesTheOthers) {
    int eager = 0;
    int quiet = 0;
    const auto eagerSink = addSink([&](const LogMessage&) {
        if (++eager == 1)
            std::jthread(logLine).join(); // it may wait for a thread that logs
        logLine();
    });
    const auto quietSink = addSink([&](const LogMessage&) { ++quiet; });
    logLine();
    EXPECT_GT(eager, 1);
    EXPECT_LE(eager, 16);
    EXPECT_EQ(quiet, eager);
    eager = 1;
    logLine();
    EXPECT_GT(eager, 2) << "the depth counts anew for each line";
    Logger::instance().removeSink(eagerSink);
    Logger::instance().removeSink(quietSink);
}

TEST(LoggerTest, SinkThatThrowsHarmsNobody) {
    int lines = 0;
    const auto throwing = addSink([](const LogMessage&) { throw std::runtime_error("sink"); });
    const auto after = addSink([&](const LogMessage&) { ++lines; });
    EXPECT_NO_THROW(logLine());
    Logger::instance().removeSink(throwing); // hangs if the call that threw still counts as running
    Logger::instance().removeSink(after);
    EXPECT_EQ(lines, 1);
}

} // namespace
} // namespace tarvik
