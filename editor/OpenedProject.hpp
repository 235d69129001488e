#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/project/Project.hpp>
#include <tarvik/scene/Scene.hpp>

#include <QString>

#include <expected>
#include <filesystem>
#include <memory>

namespace tarvik::editor {

struct OpenedProject {
    Project project;
    std::shared_ptr<const Scene> scene; // never null
    QString sceneChoice;                // that was asked for
    QString sceneProblem;               // why the scene is empty although the project names one
};

// sceneChoice, relative to the project, is shown instead of the default scene; empty for the default. Clears
// a moved build tree away, which takes long, too.
[[nodiscard]] std::expected<OpenedProject, Error> openProject(const std::filesystem::path& folder,
                                                              const QString& sceneChoice);

// The file, relative to the project or absolute, must lie in the project.
[[nodiscard]] std::expected<Scene, Error> openScene(const std::filesystem::path& projectRoot,
                                                    const std::filesystem::path& file);

} // namespace tarvik::editor
