#pragma once

#include "CameraControls.hpp"
#include "OpenedProject.hpp"
#include "ProjectTemplate.hpp"

#include <tarvik/project/ProjectRegistry.hpp>

#include <QObject>

#include <memory>

class QWidget;

namespace tarvik::editor {

class OpeningBar;

// The ways to a project and to another scene of it, all of which lead through the disk: the user waits at the
// bar, and the signals bring what was read.
class ProjectOpener final : public QObject {
    Q_OBJECT

public:
    // Both are borrowed; questions are asked over the window.
    ProjectOpener(OpeningBar& bar, QWidget& window);

    void ask();
    void askForNew(ProjectTemplate start);
    void open(const QString& folder);
    // With a scene of one's choice; empty for the default.
    void openAt(const QString& folder, const QString& scene, Viewpoint viewpoint);
    void openRecent(const RecentProject& recent);
    // Makes the project first.
    void create(const QString& folder, const QString& name);
    // Of the project in that folder.
    void openScene(const std::filesystem::path& root, const QString& file);

Q_SIGNALS:
    // The receiver may take the project.
    void opened(const std::shared_ptr<tarvik::editor::OpenedProject>& project,
                tarvik::editor::Viewpoint viewpoint);
    void sceneOpened(const std::filesystem::path& root, const QString& file,
                     const std::shared_ptr<const tarvik::Scene>& scene);
    void failed(const QString& problem);
    // There is no project any more where it was.
    void notFound(const tarvik::RecentProject& recent, const QString& problem);

private:
    void take(std::expected<OpenedProject, Error> project, Viewpoint viewpoint);

    OpeningBar& bar_;
    QWidget& window_;
};

} // namespace tarvik::editor
