#include <tarvik/app/LogBridge.hpp>

namespace tarvik::app {

LogBridge::LogBridge() = default;
LogBridge::~LogBridge() = default;

void LogBridge::push(const LogMessage& msg) {
    constexpr std::int64_t nanosecondsPerMillisecond = 1'000'000;
    const UiLogEntry entry{
        .level = msg.level,
        .category = QString::fromUtf8(msg.category),
        .message = QString::fromUtf8(msg.message),
        .time = QDateTime::fromMSecsSinceEpoch(msg.time / nanosecondsPerMillisecond),
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
