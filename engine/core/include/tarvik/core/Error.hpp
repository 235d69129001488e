#pragma once

#include <fmt/format.h>

#include <expected>
#include <string>
#include <utility>

namespace tarvik {

// Why an operation failed, in words for a person: UTF-8, naming the file or object it is about.
struct Error {
    std::string message;
};

// The failure branch of a std::expected<T, Error>. The format is always processed: write "{{" for a brace.
template <typename... Args>
[[nodiscard]] std::unexpected<Error> makeError(fmt::format_string<Args...> format, Args&&... args) {
    return std::unexpected(Error{fmt::format(format, std::forward<Args>(args)...)});
}

} // namespace tarvik
