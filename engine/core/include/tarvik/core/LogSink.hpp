#pragma once

#include <tarvik/core/Export.hpp>

#include <cstdint>
#include <string>

namespace tarvik {

enum class LogLevel : std::uint8_t { Debug = 1, Info = 2, Warn = 3, Error = 4 };

struct LogMessage {
    LogLevel level = LogLevel::Info;
    std::string category;  // UTF-8
    std::string message;   // UTF-8 by convention; may hold any bytes, NUL included
    std::int64_t time = 0; // nanoseconds since 1970-01-01 UTC
};

// Receives log lines on whatever thread logs them, several threads at once included.
class TARVIK_CORE_API LogSink {
public:
    LogSink() = default;
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;
    virtual ~LogSink();

    // May itself log. What it throws is swallowed: a failing sink never harms the code that logs.
    virtual void write(const LogMessage& msg) = 0;
};

} // namespace tarvik
