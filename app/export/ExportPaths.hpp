#pragma once

#include <tarvik/core/Paths.hpp>

#include <filesystem>
#include <string>
#include <system_error>

namespace tarvik::app {

// The path as it stands, for messages and names. Where paths are UTF-16, some have no such text.
[[nodiscard]] inline std::string narrow(const std::filesystem::path& path) {
    try {
        return path.string();
    } catch (const std::system_error&) {
        return paths::toUtf8(path);
    }
}

// Absolute, with the links in the part that exists followed; empty when they lead round in circles.
[[nodiscard]] inline std::filesystem::path resolved(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path, ignored), ignored);
}

} // namespace tarvik::app
