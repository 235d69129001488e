#pragma once

#include "GameRunner.hpp"
#include "OpenedProject.hpp"
#include "ProjectTemplate.hpp"
#include "SceneViewClient.hpp"

#include <QMainWindow>

#include <memory>
#include <optional>

class QAction;
class QDockWidget;
class QStackedWidget;
class QToolBar;

namespace tarvik::editor {

class BuildPanel;
class GameActions;
class Hub;
class Inspector;
class LogPanel;
class PictureSaver;
class ProjectBuild;
class RecentProjects;
class SceneTree;
class Session;
class StatusDisplay;
class ViewportPane;

// The editor: the scene in the middle, its entities and the log around it; the hub while no project is
// open.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(Session& session);
    ~MainWindow() override;

    // Opens the project that the options name, and shows the window.
    void start();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createDocks();
    void createGameMenus();
    void createFileMenu();
    void createViewMenu();
    void createHelpMenu();
    void createToolBar();
    void restoreWindowState();

    void open(const QString& folder);
    void load(const QString& folder, const QString& scene, Viewpoint viewpoint);
    void openScene(const QString& file);
    void create(const QString& folder, const QString& name, ProjectTemplate start);
    void reload();
    void closeProject();
    void saveThumbnail();
    void showProject(const OpenedProject& project, Viewpoint viewpoint);
    void showStartPage();
    void askForProject();
    void askForNewProject(ProjectTemplate start);
    void askForProjectSettings();
    void askForPreferences();

    void openBuild(const QString& root);
    void closeBuild();
    void askForNewBehaviour();
    void showGame();
    void showScene();
    void showGameProblem(const QString& problem);
    void showBuildProblems();

    void startRendering();
    void stopRendering();
    void setDocksAvailable(bool on);
    void updateTitle();
    [[nodiscard]] QString projectName() const; // as one line; empty while none is open
    void showAbout();

    Session& session_;
    std::optional<OpenedProject> project_;
    SceneViewClient client_;
    std::unique_ptr<ProjectBuild> build_; // of the open project
    GameRunner runner_;
    std::unique_ptr<GameActions> game_;
    QStackedWidget* pages_;
    Hub* hub_;
    std::unique_ptr<RecentProjects> recent_;
    std::unique_ptr<StatusDisplay> status_;
    ViewportPane* pane_;
    PictureSaver* pictures_;
    SceneTree* sceneTree_ = nullptr;
    Inspector* inspector_ = nullptr;
    LogPanel* logPanel_ = nullptr;
    BuildPanel* buildPanel_ = nullptr;
    QDockWidget* buildDock_ = nullptr;
    QList<QAction*> projectActions_; // of use only while a project is open
    QAction* export_ = nullptr;
    QAction* projectSettings_ = nullptr;
    QToolBar* toolBar_ = nullptr;
    QByteArray standardLayout_;
    QByteArray layout_; // of the docks, while the start page hides them
    bool docksAvailable_ = true;
};

} // namespace tarvik::editor
