#pragma once

#include <tarvik/app/LogBridge.hpp>

#include <deque>
#include <mutex>
#include <utility>

namespace tarvik::editor {

// Where any thread leaves log lines for the log panel, which fetches them in batches. Bounded: of a flood the
// newest lines stay.
class LogInbox final {
public:
    void put(const app::UiLogEntry& entry) {
        const std::scoped_lock guard(lock_);
        if (closed_)
            return;
        if (lines_.size() == app::LogBridge::kHistory)
            lines_.pop_front();
        lines_.push_back(entry);
    }

    [[nodiscard]] std::deque<app::UiLogEntry> takeAll() {
        const std::scoped_lock guard(lock_);
        return std::exchange(lines_, {});
    }

    // Nobody fetches any more.
    void close() {
        const std::scoped_lock guard(lock_);
        closed_ = true;
        lines_.clear();
    }

private:
    std::mutex lock_;
    std::deque<app::UiLogEntry> lines_;
    bool closed_ = false;
};

} // namespace tarvik::editor
