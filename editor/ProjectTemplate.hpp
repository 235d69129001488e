#pragma once

#include <tarvik/core/Error.hpp>

#include <QString>

#include <cstdint>
#include <expected>
#include <filesystem>

namespace tarvik::editor {

// What a new project starts from. The sample is part of the program, so that it is there wherever the editor
// is installed.
enum class ProjectTemplate : std::uint8_t { Empty, Sample };

// Makes the project in a folder that is not there or empty. What a failure leaves undone is taken back.
[[nodiscard]] std::expected<void, Error> createProject(const std::filesystem::path& folder,
                                                       const QString& name, ProjectTemplate start);

} // namespace tarvik::editor
