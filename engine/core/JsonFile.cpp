#include <tarvik/core/JsonFile.hpp>

#include <tarvik/core/File.hpp>
#include <tarvik/core/Paths.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <ranges>
#include <string_view>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kMaxBytes = 256ULL << 20U;
constexpr std::size_t kMaxDepth = 64;
constexpr std::size_t kMaxFields = 256;        // of one object: finding a field takes a linear search
constexpr std::size_t kMaxText = 4U << 20U;    // bytes; a syntax error within a text quotes all of it
constexpr std::size_t kMaxValues = 10'000'000; // a value takes some 50 bytes of memory

struct Problem {
    std::size_t offset;
    std::string reason;
};

// "line:column" of a byte, both from 1; the column counts characters.
std::string placeOf(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = std::ranges::count(before, '\n') + 1;
    const std::string_view start = before.substr(before.rfind('\n') + 1);
    const auto column =
        std::ranges::count_if(start, [](char c) { return (static_cast<std::uint8_t>(c) & 0xC0U) != 0x80U; }) +
        1;
    return fmt::format("{}:{}", line, column);
}

// Beyond the longest text allowed it looks no further.
std::size_t endOfString(std::string_view text, std::size_t quote) {
    const std::size_t limit = std::min(text.size(), quote + kMaxText + 2);
    std::size_t index = quote + 1;
    while (index < limit && text[index] != '"')
        index += text[index] == '\\' ? 2 : 1;
    return index;
}

// A look at the brackets, commas and colons alone, before any memory is spent on values. It reads strings as
// the parser does, so up to the first syntax error both see the same structure.
std::optional<Problem> findExcess(std::string_view text) {
    std::array<std::size_t, kMaxDepth> fields{};
    std::size_t depth = 0;
    std::size_t values = 1;
    std::size_t end = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        switch (text[index]) {
        case '"':
            end = endOfString(text, index);
            if (end - index > kMaxText)
                return Problem{index, fmt::format("a text of more than {} bytes", kMaxText)};
            index = end;
            break;
        case '{':
        case '[':
            if (depth == kMaxDepth)
                return Problem{index, fmt::format("nested deeper than {} levels", kMaxDepth)};
            fields[depth++] = 0;
            ++values;
            break;
        case '}':
        case ']':
            depth -= depth > 0 ? 1 : 0;
            break;
        case ',':
            ++values;
            break;
        case ':':
            if (depth > 0 && ++fields[depth - 1] > kMaxFields)
                return Problem{index, fmt::format("an object has more than {} fields", kMaxFields)};
            break;
        case '\0': // which the parser would take for the end of the file
            return Problem{index, "a NUL byte"};
        default:
            break;
        }
        if (values > kMaxValues)
            return Problem{index, fmt::format("more than {} values", kMaxValues)};
    }
    return std::nullopt;
}

// The parser's words without its own prefix, place and quotation, which may be as long as the file and need
// not be UTF-8.
std::string reasonOf(const Json::exception& error) {
    std::string_view reason = error.what();
    for (const std::string_view start : {"] ", ", column ", ": "})
        if (const std::size_t found = reason.find(start); found < 80)
            reason.remove_prefix(found + start.size());
    return std::string(reason.substr(0, std::min<std::size_t>(reason.find("; last read"), 300)));
}

std::expected<Json, Problem> parse(std::string_view text) {
    if (auto excess = findExcess(text))
        return std::unexpected(*excess);
    try {
        Json value = Json::parse(text);
        if (!value.is_object())
            return std::unexpected(
                Problem{0, fmt::format("an object is expected, not a {}", value.type_name())});
        return value;
    } catch (const Json::parse_error& error) {
        return std::unexpected(Problem{error.byte == 0 ? 0 : error.byte - 1, reasonOf(error)});
    } catch (const Json::exception& error) {
        return std::unexpected(Problem{0, reasonOf(error)});
    } catch (const std::exception& error) {
        return std::unexpected(Problem{0, error.what()});
    }
}

// These two read text that the parser has accepted.
std::size_t endOfValue(std::string_view text, std::size_t begin) {
    std::size_t depth = 0;
    std::size_t index = begin;
    do {
        const char c = text[index];
        if (c == '"')
            index = endOfString(text, index);
        depth += c == '{' || c == '[' ? 1 : 0;
        depth -= c == '}' || c == ']' ? 1 : 0;
        ++index;
    } while (depth > 0 || std::string_view(",]} \t\r\n").find(text[index]) == std::string_view::npos);
    return index;
}

// Of the value that the steps lead to, or of the last one on the way when there is none.
std::size_t offsetOf(std::string_view text, std::string_view where) {
    std::size_t value = text.find('{');
    for (const auto part : where | std::views::split('/')) {
        const std::string_view step(part.begin(), part.end());
        const bool isObject = text[value] == '{';
        if (!isObject && text[value] != '[')
            break;
        std::size_t wanted = 0;
        std::from_chars(step.data(), step.data() + step.size(), wanted);
        std::size_t found = value;
        std::size_t index = text.find_first_not_of(" \t\r\n", value + 1);
        for (std::size_t number = 0; text[index] != '}' && text[index] != ']'; ++number) {
            std::string_view field;
            if (isObject) {
                const std::size_t end = endOfString(text, index);
                field = text.substr(index + 1, end - index - 1);
                index = text.find_first_not_of(" \t\r\n:", end + 1);
            }
            if (isObject ? field == step : number == wanted) // of equal fields the parser takes the last
                found = index;
            index = text.find_first_not_of(" \t\r\n,", endOfValue(text, index));
        }
        if (found == value)
            break;
        value = found;
    }
    return value;
}

} // namespace

std::expected<Json, Error> readJsonFile(const fs::path& file, std::uint64_t maxBytes) {
    const auto text = readFile(file, maxBytes);
    if (!text)
        return std::unexpected(text.error());
    auto value = parse(*text);
    if (!value)
        return makeError("{}:{}: {}", paths::toUtf8(file), placeOf(*text, value.error().offset),
                         value.error().reason);
    return *std::move(value);
}

Error errorIn(const fs::path& file, const JsonProblem& problem) {
    const auto text = readFile(file, kMaxBytes);
    if (!text || !parse(*text))
        return {fmt::format("{}: {}", paths::toUtf8(file), problem.reason)};
    return {fmt::format("{}:{}: {}", paths::toUtf8(file), placeOf(*text, offsetOf(*text, problem.where)),
                        problem.reason)};
}

std::expected<void, Error> writeJsonFile(const fs::path& file, const Json& value) {
    try {
        const std::string text = value.dump(2) + '\n';
        // What is written can be read again: the good file that it would replace is worth more.
        if (text.size() > kMaxBytes)
            return makeError("cannot write {}: more than {} bytes", paths::toUtf8(file), kMaxBytes);
        if (const auto excess = findExcess(text))
            return makeError("cannot write {}: {}", paths::toUtf8(file), excess->reason);
        return writeFileDurably(file, text);
    } catch (const std::exception& error) {
        return makeError("cannot write {}: {}", paths::toUtf8(file), error.what());
    }
}

} // namespace tarvik
