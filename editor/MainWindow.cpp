#include "MainWindow.hpp"

#include "BuildPanel.hpp"
#include "Controls.hpp"
#include "DisplayText.hpp"
#include "ExportDialog.hpp"
#include "GameActions.hpp"
#include "GpuList.hpp"
#include "Hub.hpp"
#include "Inspector.hpp"
#include "LogPanel.hpp"
#include "NewBehaviourDialog.hpp"
#include "OpeningBar.hpp"
#include "PictureSaver.hpp"
#include "PreferencesDialog.hpp"
#include "ProjectBuild.hpp"
#include "ProjectOpener.hpp"
#include "RecentProjects.hpp"
#include "SceneTree.hpp"
#include "Session.hpp"
#include "StatusDisplay.hpp"
#include "ThumbnailWriter.hpp"
#include "ViewportPane.hpp"
#include "WindowLayout.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>
#include <tarvik/app/ProjectSettingsDialog.hpp>
#include <tarvik/app/ScriptBuilder.hpp>
#include <tarvik/app/Theme.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/core/Paths.hpp>
#include <tarvik/renderer/RenderContext.hpp>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDockWidget>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace tarvik::editor {
namespace {

constexpr int kMessageMs = 10'000;

} // namespace

MainWindow::MainWindow(Session& session)
    : session_(session),
      client_(session.options()),
      runner_(session, *this),
      bar_(new OpeningBar(this)),
      opener_(std::make_unique<ProjectOpener>(*bar_, *this)),
      pages_(new QStackedWidget(this)),
      hub_(new Hub(pages_)),
      recent_(std::make_unique<RecentProjects>(session, *hub_, *bar_)),
      status_(std::make_unique<StatusDisplay>(*statusBar())),
      pane_(new ViewportPane(client_, pages_)),
      pictures_(new PictureSaver(*this, *pane_)) {
    createPages();
    createPanels();
    createFileMenu();
    createViewMenu();
    createGameMenus();
    createHelpMenu();
    fillToolBar();
    connectOpener();

    connect(sceneTree_, &SceneTree::entityChosen, &client_, &SceneViewClient::select);
    connect(sceneTree_, &SceneTree::entityChosen, inspector_, &Inspector::inspect);
    connect(sceneTree_, &SceneTree::entityActivated, &client_, &SceneViewClient::frameSelection);
    connect(&client_, &SceneViewClient::entityChosen, sceneTree_, &SceneTree::choose);
    connect(&client_, &SceneViewClient::entityChosen, inspector_, &Inspector::inspect);
    connect(&client_, &SceneViewClient::tabPressed, pane_, &ViewportPane::passFocus);
    connect(pictures_, &PictureSaver::failed, this,
            [this](const QString& problem) { session_.reportFailure(this, problem); });
    session_.watch(*pane_);
    connect(pane_, &ViewportPane::frameRendered, this, [this] { status_->countFrame(); });
    connect(pane_, &ViewportPane::renderFailed, status_.get(), &StatusDisplay::stopRendering);
    connect(&session_, &Session::contextAboutToChange, this, [this] {
        stopRendering();
        logPanel_->detach();
    });
    connect(&session_, &Session::contextChanged, this, [this] {
        logPanel_->attach(*session_.context().logBridge);
        if (project_)
            startRendering();
    });
    logPanel_->attach(*session_.context().logBridge);
    createLayout();
    showStartPage();
}

MainWindow::~MainWindow() {
    pane_->stop();
}

void MainWindow::start() {
    const app::AppOptions& options = session_.options();
    if (!options.newProjectName.isEmpty()) {
        const QString projects = app::Preferences::load().effectiveProjectsDirectory();
        const QString standard = projects + '/' + options.newProjectName;
        opener_->create(options.projectDir.isEmpty() ? standard : options.projectDir, options.newProjectName);
    } else if (!options.projectDir.isEmpty()) {
        opener_->openAt(options.projectDir, options.scene, Viewpoint::New);
    } else {
        session_.show(*this);
        return;
    }
    // Not the start page first, for a moment.
    connect(
        bar_, &OpeningBar::settled, this, [this] { session_.show(*this); }, Qt::SingleShotConnection);
}

void MainWindow::createPages() {
    pages_->addWidget(hub_);
    pages_->addWidget(pane_);
    pane_->showFocus();
    auto* page = new QWidget(this);
    auto* rows = new QVBoxLayout(page);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(bar_);
    rows->addWidget(pages_, 1);
    setCentralWidget(page);
}

void MainWindow::createPanels() {
    setDockNestingEnabled(true);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    const auto addDock = [this]<typename Content>(Content*& content, const QString& title, const char* name,
                                                  Qt::DockWidgetArea area, const QKeySequence& shortcut) {
        auto* dock = new QDockWidget(title, this);
        dock->setObjectName(name);
        content = new Content(dock);
        dock->setWidget(content);
        addDockWidget(area, dock);
        // The dock's own action would close a panel that is behind another one, not bring it to the front.
        auto* inSight = new QAction(title, dock);
        inSight->setCheckable(true);
        inSight->setShortcut(shortcut);
        connect(dock, &QDockWidget::visibilityChanged, inSight, &QAction::setChecked);
        connect(inSight, &QAction::triggered, dock, [dock](bool on) {
            dock->setVisible(on);
            if (on)
                dock->raise();
        });
        panelActions_ += inSight;
        return dock;
    };
    QDockWidget* scene =
        addDock(sceneTree_, tr("Scene"), "sceneDock", Qt::LeftDockWidgetArea, QKeySequence("Ctrl+1"));
    QDockWidget* log =
        addDock(logPanel_, tr("Log"), "logDock", Qt::BottomDockWidgetArea, QKeySequence("Ctrl+2"));
    buildDock_ =
        addDock(buildPanel_, tr("Build"), "buildDock", Qt::BottomDockWidgetArea, QKeySequence("Ctrl+3"));
    QDockWidget* inspector = addDock(inspector_, tr("Inspector"), "inspectorDock", Qt::RightDockWidgetArea,
                                     QKeySequence("Ctrl+4"));
    toolBar_ = addToolBar(tr("Tool Bar"));
    toolBar_->setObjectName("toolBar");
    tabifyDockWidget(log, buildDock_);
    log->raise();
    resizeDocks({scene, inspector}, {280, 280}, Qt::Horizontal);
    resizeDocks({log}, {220}, Qt::Vertical);
    panelActions_ += toolBar_->toggleViewAction();
}

void MainWindow::createFileMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&New Project…"), QKeySequence::New, this,
                    [this] { opener_->askForNew(ProjectTemplate::Empty); });
    menu->addAction(tr("&Open Project…"), QKeySequence::Open, opener_.get(), &ProjectOpener::ask);
    QMenu* recent = menu->addMenu(tr("Open &Recent"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { recent_->fill(*recent); });
    menu->addSeparator();
    projectActions_ +=
        menu->addAction(tr("Re&load Project"), QKeySequence::Refresh, this, &MainWindow::reload);
    projectActions_ +=
        menu->addAction(tr("&Close Project"), QKeySequence::Close, this, &MainWindow::closeProject);
    menu->addSeparator();
    projectActions_ += menu->addAction(tr("&Save Picture…"), QKeySequence("Ctrl+Shift+S"), this, [this] {
        pictures_->askForScene(QString::fromStdString(project_->scene->name()));
    });
    projectActions_ += menu->addAction(tr("Save Picture of &Window…"), this, [this] {
        pictures_->askForWindow(tr("%1 window").arg(projectName()));
    });
    menu->addSeparator();
    export_ = menu->addAction(app::theme::icon("open"), tr("&Export…"), QKeySequence("Ctrl+Shift+E"), this,
                              [this] { (new ExportDialog(*build_, projectName(), this))->open(); });
    projectActions_ += export_;
    menu->addSeparator();
    projectSettings_ = menu->addAction(app::theme::icon("settings"), tr("Project Se&ttings…"), this,
                                       &MainWindow::askForProjectSettings);
    projectActions_ += projectSettings_;
    QAction* preferences =
        menu->addAction(tr("Pre&ferences…"), QKeySequence::Preferences, this, &MainWindow::askForPreferences);
    preferences->setMenuRole(QAction::PreferencesRole);
    menu->addSeparator();
    QAction* quit = menu->addAction(tr("&Quit"), QKeySequence::Quit, this, &MainWindow::close);
    quit->setMenuRole(QAction::QuitRole);
}

// The one that bars and titles show; Qt's own has the docks' own actions.
QMenu* MainWindow::createPopupMenu() {
    auto* menu = new QMenu(this);
    menu->addActions(panelActions_);
    return menu;
}

void MainWindow::createViewMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    menu->addActions(panelActions_);
    projectActions_ += panelActions_;
    menu->addSeparator();
    QAction* grid = menu->addAction(tr("Ground &Grid"));
    grid->setCheckable(true);
    grid->setChecked(session_.options().grid.value_or(true));
    grid->setShortcut(QKeySequence("Ctrl+G"));
    connect(grid, &QAction::toggled, this, [this](bool on) { client_.setGrid(on); });
    // The scene view hears F by itself; as a shortcut it would be missing wherever one types.
    QAction* frame = menu->addAction(tr("&Frame Selection\tF"), &client_, &SceneViewClient::frameSelection);
    QAction* reset = menu->addAction(tr("&Reset Layout"));
    connect(reset, &QAction::triggered, this, [this] { layout_->reset(); });
    projectActions_ += {grid, frame, reset};
}

void MainWindow::createGameMenus() {
    game_ = std::make_unique<GameActions>(*menuBar(), runner_);
    connect(game_.get(), &GameActions::playRequested, this, [this] { runner_.play(project_->scene); });
    connect(game_.get(), &GameActions::pauseToggled, this, [this](bool on) { client_.setPaused(on); });
    connect(game_.get(), &GameActions::newBehaviourRequested, this, &MainWindow::askForNewBehaviour);
    connect(&runner_, &GameRunner::started, this, &MainWindow::showGame);
    connect(&runner_, &GameRunner::ending, this, &MainWindow::showScene);
    connect(&runner_, &GameRunner::buildFailed, this, [this] {
        statusBar()->showMessage(tr("The game did not start: its behaviours could not be built."),
                                 kMessageMs);
    });
    connect(&runner_, &GameRunner::failed, this, &MainWindow::showGameProblem);
}

void MainWindow::fillToolBar() {
    toolBar_->setMovable(false);
    toolBar_->setIconSize({20, 20});
    toolBar_->addActions({game_->play(), game_->pause(), game_->stop()});
    toolBar_->addSeparator();
    toolBar_->addActions({game_->build(), export_});
    toolBar_->addSeparator();
    toolBar_->addAction(projectSettings_);
    for (QAction* action : toolBar_->actions()) {
        QWidget* button = toolBar_->widgetForAction(action);
        if (button != nullptr && !action->isSeparator())
            button->setFocusPolicy(Qt::TabFocus);
    }
}

void MainWindow::createHelpMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(tr("&Controls"), QKeySequence::HelpContents, this, [this] { showControls(*this); });
    QAction* about = menu->addAction(tr("&About Tarvik"), this, &MainWindow::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

// A run that nobody watches looks the same every time: it neither takes up nor leaves a window state.
void MainWindow::createLayout() {
    resize(1280, 800);
    layout_ = std::make_unique<WindowLayout>(*this);
    if (!session_.isUnattended())
        layout_->restore();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveThumbnail();
    if (!session_.isUnattended())
        layout_->save();
    QMainWindow::closeEvent(event);
}

void MainWindow::connectOpener() {
    connect(hub_, &Hub::newRequested, opener_.get(), &ProjectOpener::askForNew);
    connect(hub_, &Hub::openRequested, opener_.get(), &ProjectOpener::ask);
    connect(hub_, &Hub::projectChosen, opener_.get(), &ProjectOpener::openRecent);
    connect(recent_.get(), &RecentProjects::chosen, opener_.get(), &ProjectOpener::openRecent);
    connect(&client_, &SceneViewClient::projectDropped, opener_.get(), &ProjectOpener::open);
    connect(&client_, &SceneViewClient::sceneDropped, opener_.get(), [this](const QString& file) {
        if (project_)
            opener_->openScene(project_->project.rootDir(), file);
    });
    connect(opener_.get(), &ProjectOpener::opened, this,
            [this](const std::shared_ptr<OpenedProject>& project, Viewpoint viewpoint) {
                const bool isClosed = viewpoint == Viewpoint::Kept && !project_; // since the reload began
                if (!isClosed)
                    takeProject(std::move(*project), viewpoint);
            });
    connect(opener_.get(), &ProjectOpener::sceneOpened, this, &MainWindow::takeScene);
    connect(opener_.get(), &ProjectOpener::failed, this, &MainWindow::showFailure);
    connect(opener_.get(), &ProjectOpener::notFound, this,
            [this](const RecentProject& recent, const QString& problem) {
                if (hub_->isVisible())
                    hub_->locate(recent);
                else
                    showFailure(problem);
            });
}

void MainWindow::takeProject(OpenedProject project, Viewpoint viewpoint) {
    saveThumbnail();
    statusBar()->clearMessage();
    project_ = std::move(project);
    recent_->touch(project_->project);
    showProject(*project_, viewpoint);
}

void MainWindow::takeScene(const std::filesystem::path& root, const QString& file,
                           const std::shared_ptr<const Scene>& scene) {
    if (!project_ || project_->project.rootDir() != root) // closed meanwhile
        return;
    project_->scene = scene;
    project_->sceneChoice = file;
    project_->sceneProblem.clear();
    showProject(*project_, Viewpoint::New);
}

// What is shown stays.
void MainWindow::showFailure(const QString& problem) {
    session_.reportFailure(this, problem);
    if (!project_)
        showStartPage();
}

void MainWindow::reload() {
    if (project_)
        opener_->openAt(app::toQString(project_->project.rootDir()), project_->sceneChoice, Viewpoint::Kept);
}

void MainWindow::closeProject() {
    saveThumbnail();
    stopRendering();
    closeBuild();
    project_.reset();
    client_.setScene(nullptr);
    sceneTree_->setScene(nullptr);
    inspector_->setScene(nullptr);
    showStartPage();
}

void MainWindow::saveThumbnail() {
    if (project_ && !session_.isUnattended())
        writeThumbnail(pane_->viewport(), project_->project.rootDir(), this, [this] {
            if (!project_)
                recent_->showInHub();
        });
}

void MainWindow::showProject(const OpenedProject& project, Viewpoint viewpoint) {
    runner_.stop();
    openBuild(app::toQString(project.project.rootDir()));
    client_.setScene(project.scene, viewpoint);
    sceneTree_->setScene(project.scene);
    inspector_->setScene(project.scene);
    setPanelsAvailable(true);
    pages_->setCurrentWidget(pane_);
    updateTitle();
    if (pane_->viewport() == nullptr && !session_.restartFailedRendering())
        startRendering();
    log::info("Editor", "opened {}: {} entities", paths::toUtf8(project.project.rootDir()),
              project.scene->size());
    if (!project.sceneProblem.isEmpty())
        session_.reportFailure(this, project.sceneProblem);
}

void MainWindow::showStartPage() {
    recent_->showInHub();
    setPanelsAvailable(false);
    pages_->setCurrentWidget(hub_);
    updateTitle();
}

void MainWindow::askForProjectSettings() {
    if (!project_)
        return;
    auto* dialog = new app::ProjectSettingsDialog(project_->project, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, &project = project_->project] {
        recent_->touch(project);
        saveThumbnail();
        updateTitle();
    });
    dialog->open();
}

void MainWindow::askForPreferences() {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const GpuList gpus = availableGpus();
    QGuiApplication::restoreOverrideCursor();
    (new PreferencesDialog(gpus, this))->open();
}

void MainWindow::openBuild(const QString& root) {
    if (build_ && build_->root() == root)
        return;
    closeBuild();
    build_ = std::make_unique<ProjectBuild>(root);
    build_->watch();
    connect(build_.get(), &ProjectBuild::finished, this, [this](bool ok) {
        if (!ok)
            showBuildProblems();
    });
    runner_.setBuild(build_.get());
    game_->setBuild(build_.get());
    buildPanel_->watch(build_.get());
    status_->watch(build_.get());
}

void MainWindow::closeBuild() {
    runner_.setBuild(nullptr);
    game_->setBuild(nullptr);
    buildPanel_->watch(nullptr);
    status_->watch(nullptr);
    build_.reset();
}

void MainWindow::askForNewBehaviour() {
    auto* dialog = new NewBehaviourDialog(*build_, this);
    dialog->open();
}

void MainWindow::showGame() {
    client_.setPaused(false);
    client_.setGame(runner_.game());
    pane_->setFocus();
    updateTitle();
}

void MainWindow::showScene() {
    client_.setGame(nullptr);
    updateTitle();
}

// A game that runs is not to be interrupted.
void MainWindow::showGameProblem(const QString& problem) {
    if (runner_.game() == nullptr) {
        session_.reportFailure(this, problem);
        return;
    }
    log::error("Game", "{}", problem.toStdString());
    statusBar()->showMessage(problem, kMessageMs);
}

void MainWindow::showBuildProblems() {
    if (!buildDock_->isHidden())
        buildDock_->raise();
}

void MainWindow::startRendering() {
    pane_->start(session_.context());
    if (pane_->viewport() == nullptr)
        return;
    status_->startRendering(QString::fromStdString(session_.context().renderContext()->deviceName()));
}

void MainWindow::stopRendering() {
    pane_->stop();
    status_->stopRendering();
}

// The start page stands alone; what the user arranged comes back with a project.
void MainWindow::setPanelsAvailable(bool on) {
    for (QAction* action : projectActions_)
        action->setEnabled(on);
    layout_->setPanelsAvailable(on);
}

void MainWindow::updateTitle() {
    if (!project_)
        setWindowTitle(tr("Tarvik"));
    else
        setWindowTitle(
            (client_.isPlaying() ? tr("%1 (playing) – Tarvik") : tr("%1 – Tarvik")).arg(projectName()));
}

QString MainWindow::projectName() const {
    return project_ ? oneLine(QString::fromStdString(project_->project.name())) : QString();
}

void MainWindow::showAbout() {
    QString text =
        tr("Tarvik Editor %1\n\nBuilt with Qt %2").arg(QCoreApplication::applicationVersion(), qVersion());
    if (!status_->gpu().isEmpty())
        text += tr("\nRendering with Vulkan on %1").arg(status_->gpu());
    auto* box = new QMessageBox(QMessageBox::NoIcon, tr("About Tarvik"), text, QMessageBox::Ok, this);
    box->setTextFormat(Qt::PlainText);
    box->setIconPixmap(app::theme::icon("logo").pixmap(48));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace tarvik::editor
