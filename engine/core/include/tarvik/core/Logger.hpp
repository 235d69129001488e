#pragma once

#include <tarvik/core/Export.hpp>
#include <tarvik/core/LogSink.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace tarvik {

// The process-wide logger. Every operation is safe on any thread.
class TARVIK_CORE_API Logger final {
public:
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    // Never destroyed, so that static destructors may still log.
    static Logger& instance();

    // Lines below the threshold are dropped; Info at start.
    void setThreshold(LogLevel level);
    [[nodiscard]] LogLevel threshold() const;
    [[nodiscard]] bool shouldLog(LogLevel level) const;

    // Hands the line to every sink, on the calling thread, threshold or not. A line logged by a sink while it
    // handles a line reaches the other sinks and that one too, but only to a small fixed depth: lines nested
    // deeper are dropped, so that a sink that logs about every line ends.
    void log(LogLevel level, std::string_view category, std::string message);

    // Adding a sink twice has no effect; a null sink is ignored.
    void addSink(std::shared_ptr<LogSink> sink);

    // After it returns the sink is not called again, and no call of it is running on another thread. Called
    // from inside a sink's write() it waits neither for the calls around it nor for calls that remove sinks
    // themselves: sinks may remove themselves and each other, on several threads at once.
    void removeSink(const std::shared_ptr<LogSink>& sink);

private:
    Logger();
    ~Logger();

    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik
