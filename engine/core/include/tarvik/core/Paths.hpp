#pragma once

#include <tarvik/core/Export.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvik::paths {

// "Tarvik Projects" in the user's documents folder: XDG's on Linux, Documents on Windows. Neither tested for
// existence nor created.
[[nodiscard]] TARVIK_CORE_API std::filesystem::path defaultProjectsDir();

// Where this user's application data is kept: $XDG_DATA_HOME/tarvik on Linux, %APPDATA%\Tarvik on Windows.
// Not created.
[[nodiscard]] TARVIK_CORE_API std::filesystem::path userDataDir();

// The path as UTF-8 for messages and files, with "/" separators. Bytes that are not UTF-8 are kept.
[[nodiscard]] TARVIK_CORE_API std::string toUtf8(const std::filesystem::path& path);
[[nodiscard]] TARVIK_CORE_API std::filesystem::path fromUtf8(std::string_view text);

} // namespace tarvik::paths
