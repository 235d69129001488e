#pragma once

#include <tarvik/core/Logger.hpp>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::test {

using Lines = std::vector<std::string>;

// Records what is logged while it lives, from the lowest level up.
class LogCapture final {
public:
    LogCapture() {
        Logger::instance().setThreshold(LogLevel::Debug);
        Logger::instance().addSink(sink_);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { Logger::instance().removeSink(sink_); }

    // Lines of at least that level; of every category when that is empty.
    [[nodiscard]] Lines lines(LogLevel least, std::string_view category = {}) const {
        const std::scoped_lock guard(sink_->lock);
        Lines result;
        for (const LogMessage& message : sink_->messages) {
            if (message.level >= least && (category.empty() || message.category == category))
                result.push_back(message.message);
        }
        return result;
    }

private:
    struct Sink final : LogSink {
        void write(const LogMessage& message) override {
            const std::scoped_lock guard(lock);
            messages.push_back(message);
        }
        std::mutex lock;
        std::vector<LogMessage> messages;
    };
    std::shared_ptr<Sink> sink_ = std::make_shared<Sink>();
};

} // namespace tarvik::test
