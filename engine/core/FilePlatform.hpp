#pragma once

#include <tarvik/core/Error.hpp>

#include <expected>
#include <filesystem>
#include <string_view>

namespace tarvik {

// Replaces the content of a file that is no link, in an existing folder. See writeFileDurably.
std::expected<void, Error> replaceFile(const std::filesystem::path& file, std::string_view content);

// Makes what was created or renamed in the folder survive a power cut.
std::expected<void, Error> syncFolder(const std::filesystem::path& folder);

} // namespace tarvik
