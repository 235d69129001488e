#include "OpenedProject.hpp"

#include "MovedBuildTree.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/core/Paths.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <algorithm>
#include <system_error>

namespace tarvik::editor {
namespace {

// A project file comes from anywhere: the scene it names must lie in the project, links resolved.
std::expected<std::filesystem::path, Error> sceneFile(const std::filesystem::path& projectRoot,
                                                      const std::filesystem::path& scene) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path root = fs::canonical(projectRoot, error);
    if (error)
        return makeError("{}: {}", paths::toUtf8(projectRoot), error.message());
    const fs::path file = fs::weakly_canonical(root / scene, error);
    if (error)
        return makeError("{}: {}", paths::toUtf8(root / scene), error.message());
    const bool inside = std::ranges::mismatch(root, file).in1 == root.end();
    if (!inside || scene.native().find(fs::path::value_type{}) != fs::path::string_type::npos) {
        return makeError("{}: the scene lies outside the project {}; copy it in there first",
                         paths::toUtf8(scene), paths::toUtf8(projectRoot));
    }
    return file;
}

} // namespace

std::expected<OpenedProject, Error> openProject(const std::filesystem::path& folder,
                                                const QString& sceneChoice) {
    auto project = Project::open(folder);
    if (!project)
        return std::unexpected(project.error());
    removeMovedBuildTree(app::toQString(project->rootDir()));
    const std::filesystem::path wanted =
        sceneChoice.isEmpty() ? paths::fromUtf8(project->defaultScene()) : app::toPath(sceneChoice);

    OpenedProject opened{*std::move(project), nullptr, sceneChoice, {}};
    if (!wanted.empty()) {
        if (auto scene = openScene(opened.project.rootDir(), wanted))
            opened.scene = std::make_shared<const Scene>(*std::move(scene));
        else
            opened.sceneProblem = QString::fromStdString(scene.error().message);
    }
    if (!opened.scene)
        opened.scene = std::make_shared<const Scene>("Empty");
    return opened;
}

std::expected<Scene, Error> openScene(const std::filesystem::path& projectRoot,
                                      const std::filesystem::path& scene) {
    const auto file = sceneFile(projectRoot, scene);
    if (!file)
        return std::unexpected(file.error());
    return loadScene(*file);
}

} // namespace tarvik::editor
