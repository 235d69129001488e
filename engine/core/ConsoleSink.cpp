#include <tarvik/core/ConsoleSink.hpp>

#include "Terminal.hpp"

#include <tarvik/core/Utf8.hpp>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <string_view>

namespace tarvik {

namespace {

struct Style {
    std::string_view name;
    std::string_view colour;
};

Style styleOf(LogLevel level) {
    switch (level) {
    case LogLevel::Debug:
        return {"debug", "\x1b[2m"};
    case LogLevel::Info:
        return {"info", ""};
    case LogLevel::Warn:
        return {"warn", "\x1b[33m"};
    case LogLevel::Error:
        return {"error", "\x1b[31m"};
    }
    return {"log", ""};
}

bool isControl(std::string_view character) {
    const auto first = static_cast<std::uint8_t>(character[0]);
    if (character.size() == 1)
        return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<std::uint8_t>(character[1]) < 0xA0; // U+0080 to U+009F
}

void appendEscaped(fmt::memory_buffer& line, std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = utf8CharacterLength(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        text.remove_prefix(character.size());
        if (length != 0 && (!isControl(character) || character == "\t"))
            line.append(character);
        else if (character == "\n")
            line.append(std::string_view("\\n"));
        else
            for (const char byte : character)
                fmt::format_to(std::back_inserter(line), "\\x{:02x}", static_cast<std::uint8_t>(byte));
    }
}

} // namespace

ConsoleSink::ConsoleSink() : coloured_(std::getenv("NO_COLOR") == nullptr && prepareColouredTerminal()) {}

void ConsoleSink::write(const LogMessage& msg) {
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    const auto seconds = static_cast<std::time_t>(msg.time / kNanosecondsPerSecond);
    const std::int64_t milliseconds = msg.time % kNanosecondsPerSecond / 1'000'000;
    const Style style = styleOf(msg.level);

    fmt::memory_buffer line;
    if (coloured_)
        line.append(style.colour);
    fmt::format_to(std::back_inserter(line), "{:%H:%M:%S}.{:03} {:<5} ", fmt::localtime(seconds),
                   milliseconds, style.name);
    appendEscaped(line, msg.category);
    line.append(std::string_view(": "));
    appendEscaped(line, msg.message);
    if (coloured_ && !style.colour.empty())
        line.append(std::string_view("\x1b[0m"));
    line.push_back('\n');
    // One call: the stream's own lock keeps lines whole, and standard error has no buffer to hold a part
    // back.
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace tarvik
