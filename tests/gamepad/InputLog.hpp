#pragma once

#include <tarvik/core/Logger.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::test {

// Gathers what is logged in category "Input" while it lives, with the level it has to have.
class InputLog final {
public:
    InputLog() { Logger::instance().addSink(sink_); }
    InputLog(const InputLog&) = delete;
    InputLog& operator=(const InputLog&) = delete;
    ~InputLog() { Logger::instance().removeSink(sink_); }

    // The lines since the previous call.
    std::vector<std::string> take() { return std::exchange(sink_->lines, {}); }

private:
    struct Sink final : LogSink {
        void write(const LogMessage& msg) override {
            if (msg.category == "Input" && msg.level == LogLevel::Info)
                lines.push_back(msg.message);
        }
        std::vector<std::string> lines;
    };
    std::shared_ptr<Sink> sink_ = std::make_shared<Sink>();
};

} // namespace tarvik::test
