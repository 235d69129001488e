#pragma once

#include <tarvik/core/Error.hpp>

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>

namespace tarvik::app {

struct ExportProgress;

// Whether to leave out an entry, named relative to the tree's root, and all below it.
using CopyFilter = std::function<bool(const std::filesystem::path& relative)>;

// Merges the source into the destination: files replace files. Links are copied as links to their own place,
// wherever they lead. Fails at the first entry that cannot be copied; what was copied before it stays.
[[nodiscard]] std::expected<void, Error> copyTree(const std::filesystem::path& source,
                                                  const std::filesystem::path& destination,
                                                  const CopyFilter& filter, ExportProgress& progress);

// What a copy adds to the progress and, about, to a disk.
[[nodiscard]] std::expected<std::uint64_t, Error> treeSize(const std::filesystem::path& source,
                                                           const CopyFilter& filter);

} // namespace tarvik::app
