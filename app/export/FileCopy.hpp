#pragma once

#include <filesystem>
#include <system_error>

namespace tarvik::app {

struct ExportProgress;

// Copies a regular file and its permissions; the system moves the content. A file that is there already is
// replaced. Never waits at a pipe or a device.
[[nodiscard]] std::error_code copyFile(const std::filesystem::path& source,
                                       const std::filesystem::path& target, ExportProgress& progress);

} // namespace tarvik::app
