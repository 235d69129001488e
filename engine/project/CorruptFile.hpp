#pragma once

#include <tarvik/core/Error.hpp>

#include <filesystem>

namespace tarvik {

// Keeps a copy of a file that could not be understood; the error is completed by where the copy lies, or why
// there is none. A file that does not exist, or is no plain file, leaves nothing to copy.
Error keepCorrupt(const std::filesystem::path& file, const Error& error);

} // namespace tarvik
