#include <tarvik/app/LogBridge.hpp>

#include <optional>
#include <string>
#include <utility>

namespace tarvik::app {

namespace {

// What the thread's last line had too is not converted again. Lines come in bursts, and the conversion to
// local time asks the system for its time zone every time, which can take longer than all the rest of a line.
template <auto convert, typename From>
auto converted(const From& from) {
    thread_local std::optional<std::pair<From, decltype(convert(from))>> latest;
    if (!latest || latest->first != from)
        latest.emplace(from, convert(from));
    return latest->second;
}

QString toText(const std::string& utf8) {
    return QString::fromUtf8(utf8);
}

QDateTime toLocalTime(std::int64_t milliseconds) {
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

} // namespace

LogBridge::LogBridge() = default;
LogBridge::~LogBridge() = default;

void LogBridge::push(const LogMessage& msg) {
    constexpr std::int64_t nanosecondsPerMillisecond = 1'000'000;
    const UiLogEntry entry{
        .level = msg.level,
        .category = converted<toText>(msg.category),
        .message = toText(msg.message),
        .time = converted<toLocalTime>(msg.time / nanosecondsPerMillisecond),
    };
    {
        const std::scoped_lock guard(lock_);
        history_.push_back(entry);
        if (history_.size() > kHistory)
            history_.pop_front();
    }
    Q_EMIT messageLogged(entry);
}

std::vector<UiLogEntry> LogBridge::history() {
    const std::scoped_lock guard(lock_);
    return {history_.begin(), history_.end()};
}

void LogBridge::clearHistory() {
    const std::scoped_lock guard(lock_);
    history_.clear();
}

QtLogSink::QtLogSink(LogBridge& bridge) : bridge_(bridge) {}
QtLogSink::~QtLogSink() = default;

void QtLogSink::write(const LogMessage& msg) {
    bridge_.push(msg);
}

} // namespace tarvik::app
