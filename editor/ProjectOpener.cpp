#include "ProjectOpener.hpp"

#include "FileDialogs.hpp"
#include "NewProjectDialog.hpp"
#include "OpeningBar.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>

#include <utility>

namespace tarvik::editor {
namespace {

struct Visit {
    std::expected<OpenedProject, Error> project;
    bool found; // whether the folder holds a project, readable or not
};

QString messageOf(const Error& error) {
    return QString::fromStdString(error.message);
}

} // namespace

ProjectOpener::ProjectOpener(OpeningBar& bar, QWidget& window) : bar_(bar), window_(window) {}

void ProjectOpener::ask() {
    askForFolder(&window_, tr("Open Project"), app::Preferences::load().effectiveProjectsDirectory(),
                 [this](const QString& folder) { open(folder); });
}

void ProjectOpener::askForNew(ProjectTemplate start) {
    auto* dialog = new NewProjectDialog(start, &window_);
    connect(dialog, &NewProjectDialog::created, this, &ProjectOpener::open);
    dialog->open();
}

void ProjectOpener::open(const QString& folder) {
    openAt(folder, {}, Viewpoint::New);
}

void ProjectOpener::openAt(const QString& folder, const QString& scene, Viewpoint viewpoint) {
    bar_.await(
        folder, [path = app::toPath(folder), scene] { return openProject(path, scene); },
        [this, viewpoint](auto project) { take(std::move(project), viewpoint); });
}

void ProjectOpener::openRecent(const RecentProject& recent) {
    const auto visit = [path = recent.path] {
        auto project = openProject(path, {});
        const bool found = project || Project::isIn(path);
        return Visit{std::move(project), found};
    };
    bar_.await(app::toQString(recent.path), visit, [this, recent](Visit visited) {
        if (visited.found)
            take(std::move(visited.project), Viewpoint::New);
        else
            Q_EMIT notFound(recent, messageOf(visited.project.error()));
    });
}

void ProjectOpener::create(const QString& folder, const QString& name) {
    const auto createAndOpen = [path = app::toPath(folder), name]() -> std::expected<OpenedProject, Error> {
        if (auto created = createProject(path, name, ProjectTemplate::Empty); !created)
            return std::unexpected(created.error());
        return openProject(path, {});
    };
    bar_.await(folder, createAndOpen, [this](auto project) { take(std::move(project), Viewpoint::New); });
}

void ProjectOpener::openScene(const std::filesystem::path& root, const QString& file) {
    bar_.await(
        file, [root, path = app::toPath(file)] { return editor::openScene(root, path); },
        [this, root, file](std::expected<Scene, Error> scene) {
            if (scene)
                Q_EMIT sceneOpened(root, file, std::make_shared<const Scene>(*std::move(scene)));
            else
                Q_EMIT failed(messageOf(scene.error()));
        });
}

void ProjectOpener::take(std::expected<OpenedProject, Error> project, Viewpoint viewpoint) {
    if (project)
        Q_EMIT opened(std::make_shared<OpenedProject>(*std::move(project)), viewpoint);
    else
        Q_EMIT failed(messageOf(project.error()));
}

} // namespace tarvik::editor
