#pragma once

#include <tarvik/app/GameExport.hpp>

#include <atomic>
#include <cstdint>
#include <expected>
#include <filesystem>

namespace tarvik::editor {

// Exports as app::exportGame does, but into a folder beside the destination that takes the destination's name
// when everything has succeeded: whatever else happens, nothing is under that name, and the part is removed.
// Refuses, too, what the disk has no room for. total gets what progress.done grows to.
[[nodiscard]] std::expected<std::filesystem::path, Error> exportStaged(const app::GameExport& request,
                                                                       app::ExportProgress& progress,
                                                                       std::atomic<std::uint64_t>& total);

} // namespace tarvik::editor
