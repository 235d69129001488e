#pragma once

#include "GameRunner.hpp"
#include "OpenedProject.hpp"
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
class OpeningBar;
class PictureSaver;
class ProjectBuild;
class ProjectOpener;
class RecentProjects;
class SceneTree;
class Session;
class StatusDisplay;
class ViewportPane;
class WindowLayout;

// The editor: the scene in the middle, its entities and the log around it; the hub while no project is
// open.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(Session& session);
    ~MainWindow() override;

    // Opens the project that the options name, and shows the window, at the latest when that takes long.
    void start();

    QMenu* createPopupMenu() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createPages();
    void createPanels();
    void createFileMenu();
    void createViewMenu();
    void createGameMenus();
    void createHelpMenu();
    void fillToolBar();
    void createLayout();
    void connectOpener();

    void takeProject(OpenedProject project, Viewpoint viewpoint);
    void takeScene(const std::filesystem::path& root, const QString& file,
                   const std::shared_ptr<const Scene>& scene);
    void showFailure(const QString& problem);
    void reload();
    void closeProject();
    void saveThumbnail();
    void showProject(const OpenedProject& project, Viewpoint viewpoint);
    void showStartPage();
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
    void setPanelsAvailable(bool on);
    void updateTitle();
    [[nodiscard]] QString projectName() const; // as one line; empty while none is open
    void showAbout();

    Session& session_;
    std::optional<OpenedProject> project_;
    SceneViewClient client_;
    std::unique_ptr<ProjectBuild> build_; // of the open project
    GameRunner runner_;
    std::unique_ptr<GameActions> game_;
    OpeningBar* bar_;
    std::unique_ptr<ProjectOpener> opener_;
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
    QToolBar* toolBar_ = nullptr;
    QList<QAction*> panelActions_;
    QList<QAction*> projectActions_; // of use only while a project is open
    QAction* export_ = nullptr;
    QAction* projectSettings_ = nullptr;
    std::unique_ptr<WindowLayout> layout_;
};

} // namespace tarvik::editor
