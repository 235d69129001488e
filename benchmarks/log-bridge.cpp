// What a log line costs the thread that logs it: the bridge against sinks of a common logging library, one
// that brings lines to Qt and one that only keeps the last lines.
#include "Compare.hpp"

#include "LogInbox.hpp"
#include "LogReceiver.hpp"

#include <tarvik/app/LogBridge.hpp>

#include <spdlog/sinks/qt_sinks.h>
#include <spdlog/sinks/ringbuffer_sink.h>

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <latch>
#include <optional>
#include <thread>
#include <tuple>
#include <vector>

namespace tarvik::bench {
namespace {

constexpr int kLines = 4000; // a thread and iteration
constexpr const char* kCategory = "Renderer";
constexpr const char* kText = "compiled pipeline 'lit instanced' in 12.4 ms, 3 stages, 2 attachments";

// Nanoseconds a line, with so many threads logging at once: from when the first of them begins to when the
// last of them ends. What they left in the event queue is taken out afterwards, unmeasured.
template <typename LogLine>
double costOfLine(int threads, const LogLine& logLine) {
    std::latch ready(threads);
    std::vector<Clock::time_point> starts(static_cast<std::size_t>(threads));
    std::vector<Clock::time_point> ends(starts.size());
    std::vector<std::jthread> loggers;
    loggers.reserve(starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        loggers.emplace_back([&, i, log = logLine]() mutable {
            ready.arrive_and_wait();
            starts[i] = Clock::now();
            for (int line = 0; line < kLines; ++line)
                log();
            ends[i] = Clock::now();
        });
    }
    loggers.clear();
    QCoreApplication::sendPostedEvents();
    return nanoseconds(std::ranges::max(ends) - std::ranges::min(starts)) / (threads * kLines);
}

// Either line is stamped anew, as its logger would.
auto pushTo(app::LogBridge& bridge) {
    return [&bridge, message = LogMessage{LogLevel::Info, kCategory, kText, 0}]() mutable {
        using std::chrono::nanoseconds;
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        message.time = std::chrono::duration_cast<nanoseconds>(now).count();
        bridge.push(message);
    };
}

auto logTo(spdlog::sinks::sink& sink) {
    return [&sink] {
        sink.log(
            spdlog::details::log_msg(spdlog::log_clock::now(), {}, kCategory, spdlog::level::info, kText));
    };
}

// The bridge as the editor's log panel listens to it, in batches. The Qt sink knows only the event queue.
void againstQtSink(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    app::LogBridge bridge;
    editor::LogInbox inbox;
    QObject::connect(
        &bridge, &app::LogBridge::messageLogged, &bridge,
        [&inbox](const app::UiLogEntry& entry) { inbox.put(entry); }, Qt::DirectConnection);
    LogReceiver receiver;
    spdlog::sinks::qt_sink_mt sink(&receiver, "text");
    const auto push = [&] {
        const double cost = costOfLine(threads, pushTo(bridge));
        std::ignore = inbox.takeAll();
        return cost;
    };
    compare(state, 50, 1.0 / 3.0, inTurn(push, [&] { return costOfLine(threads, logTo(sink)); }));
}
BENCHMARK(againstQtSink)->Name("log line, batched / Qt sink")->ArgName("threads")->Arg(1)->Arg(4);

// Both through the event queue, a line an event: what is left to differ is small beside it.
void againstQtSinkQueued(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    LogReceiver receiver;
    app::LogBridge bridge;
    QObject::connect(&bridge, &app::LogBridge::messageLogged, &receiver, &LogReceiver::entry);
    spdlog::sinks::qt_sink_mt sink(&receiver, "text");
    compare(state, 50, std::nullopt,
            inTurn([&] { return costOfLine(threads, pushTo(bridge)); },
                   [&] { return costOfLine(threads, logTo(sink)); }));
}
BENCHMARK(againstQtSinkQueued)->Name("log line, queued / Qt sink")->ArgName("threads")->Arg(1)->Arg(4);

// The ring buffer tells nobody, so nobody listens to the bridge either. Both keep the same number of lines.
void againstRingBuffer(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    app::LogBridge bridge;
    spdlog::sinks::ringbuffer_sink_mt sink(app::LogBridge::kHistory);
    compare(state, 50, 2.0,
            inTurn([&] { return costOfLine(threads, pushTo(bridge)); },
                   [&] { return costOfLine(threads, logTo(sink)); }));
}
BENCHMARK(againstRingBuffer)->Name("log line, kept / ring-buffer sink")->ArgName("threads")->Arg(1)->Arg(4);

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    qRegisterMetaType<tarvik::app::UiLogEntry>("tarvik::app::UiLogEntry");
    tarvik::bench::run(argc, argv);
}
