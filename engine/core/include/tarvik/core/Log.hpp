#pragma once

#include <tarvik/core/Logger.hpp>

#include <fmt/format.h>

#include <string_view>
#include <utility>

// Log lines with "{}" placeholders, formatted only when the level passes the logger's threshold.
namespace tarvik::log {

template <typename... Args>
void write(LogLevel level, std::string_view category, fmt::format_string<Args...> format, Args&&... args) {
    Logger& logger = Logger::instance();
    if (logger.shouldLog(level))
        logger.log(level, category, fmt::format(format, std::forward<Args>(args)...));
}

template <typename... Args>
void debug(std::string_view category, fmt::format_string<Args...> format, Args&&... args) {
    write(LogLevel::Debug, category, format, std::forward<Args>(args)...);
}

template <typename... Args>
void info(std::string_view category, fmt::format_string<Args...> format, Args&&... args) {
    write(LogLevel::Info, category, format, std::forward<Args>(args)...);
}

template <typename... Args>
void warn(std::string_view category, fmt::format_string<Args...> format, Args&&... args) {
    write(LogLevel::Warn, category, format, std::forward<Args>(args)...);
}

template <typename... Args>
void error(std::string_view category, fmt::format_string<Args...> format, Args&&... args) {
    write(LogLevel::Error, category, format, std::forward<Args>(args)...);
}

} // namespace tarvik::log
