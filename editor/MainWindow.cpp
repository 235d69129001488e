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
#include "NewProjectDialog.hpp"
#include "PictureSaver.hpp"
#include "PreferencesDialog.hpp"
#include "ProjectBuild.hpp"
#include "RecentProjects.hpp"
#include "SceneTree.hpp"
#include "Session.hpp"
#include "StatusDisplay.hpp"
#include "ThumbnailWriter.hpp"
#include "ViewportPane.hpp"

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
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>

namespace tarvik::editor {
namespace {

constexpr int kLayoutVersion = 2;
constexpr int kMessageMs = 10'000;
const char* const kGeometryKey = "mainWindow/geometry";
const char* const kLayoutKey = "mainWindow/layout";

std::filesystem::path projectsDir() {
    return app::toPath(app::Preferences::load().effectiveProjectsDirectory());
}

} // namespace

MainWindow::MainWindow(Session& session)
    : session_(session),
      client_(session.options()),
      runner_(session, *this),
      pages_(new QStackedWidget(this)),
      hub_(new Hub(inspectProject, pages_)),
      recent_(std::make_unique<RecentProjects>(session, *hub_)),
      status_(std::make_unique<StatusDisplay>(*statusBar())),
      pane_(new ViewportPane(client_, pages_)),
      pictures_(new PictureSaver(*this, *pane_)) {
    pages_->addWidget(hub_);
    pages_->addWidget(pane_);
    setCentralWidget(pages_);
    connect(hub_, &Hub::newRequested, this, &MainWindow::askForNewProject);
    connect(hub_, &Hub::openRequested, this, &MainWindow::askForProject);
    connect(hub_, &Hub::projectChosen, this, &MainWindow::open);
    connect(recent_.get(), &RecentProjects::awaited, this, [this](const QString& folder) {
        statusBar()->showMessage(tr("Waiting for %1").arg(folder), kMessageMs);
    });

    createDocks();
    createFileMenu();
    createViewMenu();
    createGameMenus();
    createHelpMenu();
    createToolBar();

    connect(sceneTree_, &SceneTree::entityChosen, &client_, &SceneViewClient::select);
    connect(sceneTree_, &SceneTree::entityChosen, inspector_, &Inspector::inspect);
    connect(sceneTree_, &SceneTree::entityActivated, &client_, &SceneViewClient::frameSelection);
    connect(&client_, &SceneViewClient::entityChosen, sceneTree_, &SceneTree::choose);
    connect(&client_, &SceneViewClient::entityChosen, inspector_, &Inspector::inspect);
    // Queued: whoever dropped the file waits for the drop to end.
    connect(&client_, &SceneViewClient::projectDropped, this, &MainWindow::open, Qt::QueuedConnection);
    connect(&client_, &SceneViewClient::sceneDropped, this, &MainWindow::openScene, Qt::QueuedConnection);

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
    restoreWindowState();
    showStartPage();
}

MainWindow::~MainWindow() {
    pane_->stop();
}

void MainWindow::start() {
    const app::AppOptions& options = session_.options();
    if (!options.newProjectName.isEmpty()) {
        const auto folder = options.projectDir.isEmpty() ? projectsDir() / app::toPath(options.newProjectName)
                                                         : app::toPath(options.projectDir);
        create(app::toQString(folder), options.newProjectName, ProjectTemplate::Empty);
    } else if (!options.projectDir.isEmpty()) {
        load(options.projectDir, options.scene, Viewpoint::New);
    }
    session_.show(*this);
}

void MainWindow::createDocks() {
    setDockNestingEnabled(true);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    const auto addDock = [this]<typename Content>(Content*& content, const QString& title, const char* name,
                                                  Qt::DockWidgetArea area, const QKeySequence& shortcut) {
        auto* dock = new QDockWidget(title, this);
        dock->setObjectName(name);
        content = new Content(dock);
        dock->setWidget(content);
        dock->toggleViewAction()->setShortcut(shortcut);
        addDockWidget(area, dock);
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
    tabifyDockWidget(log, buildDock_);
    log->raise();
    resizeDocks({scene, inspector}, {280, 280}, Qt::Horizontal);
    resizeDocks({log}, {220}, Qt::Vertical);
}

void MainWindow::createFileMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&New Project…"), QKeySequence::New, this,
                    [this] { askForNewProject(ProjectTemplate::Empty); });
    menu->addAction(tr("&Open Project…"), QKeySequence::Open, this, &MainWindow::askForProject);
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

void MainWindow::createViewMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    for (const QDockWidget* dock : findChildren<QDockWidget*>()) {
        menu->addAction(dock->toggleViewAction());
        projectActions_ += dock->toggleViewAction();
    }
    menu->addSeparator();
    QAction* grid = menu->addAction(tr("Ground &Grid"));
    grid->setCheckable(true);
    grid->setChecked(session_.options().grid.value_or(true));
    grid->setShortcut(QKeySequence("Ctrl+G"));
    connect(grid, &QAction::toggled, this, [this](bool on) { client_.setGrid(on); });
    // The scene view hears F by itself; as a shortcut it would be missing wherever one types.
    QAction* frame = menu->addAction(tr("&Frame Selection\tF"), &client_, &SceneViewClient::frameSelection);
    QAction* reset = menu->addAction(tr("&Reset Layout"));
    connect(reset, &QAction::triggered, this, [this] { restoreState(standardLayout_, kLayoutVersion); });
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

void MainWindow::createToolBar() {
    auto* bar = new QToolBar(tr("Tools"), this);
    bar->setObjectName("toolBar");
    bar->setMovable(false);
    bar->setIconSize({20, 20});
    bar->addActions({game_->play(), game_->pause(), game_->stop()});
    bar->addSeparator();
    bar->addActions({game_->build(), export_});
    bar->addSeparator();
    bar->addAction(projectSettings_);
    for (QAction* action : bar->actions()) {
        if (QWidget* button = bar->widgetForAction(action); button != nullptr && !action->isSeparator())
            button->setFocusPolicy(Qt::TabFocus);
    }
    addToolBar(bar);
    toolBar_ = bar;
}

void MainWindow::createHelpMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(tr("&Controls"), QKeySequence::HelpContents, this, [this] { showControls(*this); });
    QAction* about = menu->addAction(tr("&About Tarvik"), this, &MainWindow::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

// A run that nobody watches looks the same every time: it neither takes up nor leaves a window state.
void MainWindow::restoreWindowState() {
    resize(1280, 800);
    standardLayout_ = saveState(kLayoutVersion);
    if (session_.isUnattended())
        return;
    const QSettings settings;
    restoreGeometry(settings.value(kGeometryKey).toByteArray());
    restoreState(settings.value(kLayoutKey).toByteArray(), kLayoutVersion);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveThumbnail();
    if (!session_.isUnattended()) {
        QSettings settings;
        settings.setValue(kGeometryKey, saveGeometry());
        settings.setValue(kLayoutKey, docksAvailable_ ? saveState(kLayoutVersion) : layout_);
    }
    QMainWindow::closeEvent(event);
}

void MainWindow::open(const QString& folder) {
    load(folder, {}, Viewpoint::New);
}

void MainWindow::load(const QString& folder, const QString& scene, Viewpoint viewpoint) {
    hub_->cancelOpening();
    statusBar()->clearMessage();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    auto opened = openProject(app::toPath(folder), scene);
    QGuiApplication::restoreOverrideCursor();
    if (!opened) {
        session_.reportFailure(this, QString::fromStdString(opened.error().message));
        if (!project_)
            showStartPage();
        return;
    }
    saveThumbnail();
    delete findChild<app::ProjectSettingsDialog*>(); // it edits the project that goes
    const OpenedProject& current = project_.emplace(*std::move(opened));
    recent_->touch(current.project);
    showProject(current, viewpoint);
}

// What is shown stays when the scene cannot be.
void MainWindow::openScene(const QString& file) {
    if (!project_)
        return;
    auto scene = editor::openScene(project_->project, app::toPath(file));
    if (!scene) {
        session_.reportFailure(this, QString::fromStdString(scene.error().message));
        return;
    }
    project_->scene = std::make_shared<const Scene>(*std::move(scene));
    project_->sceneChoice = file;
    project_->sceneProblem.clear();
    showProject(*project_, Viewpoint::New);
}

void MainWindow::create(const QString& folder, const QString& name, ProjectTemplate start) {
    if (const auto created = createProject(app::toPath(folder), name, start); created)
        open(folder);
    else
        session_.reportFailure(this, QString::fromStdString(created.error().message));
}

void MainWindow::reload() {
    if (project_)
        load(app::toQString(project_->project.rootDir()), project_->sceneChoice, Viewpoint::Kept);
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
        writeThumbnail(pane_->viewport(), project_->project.rootDir());
}

void MainWindow::showProject(const OpenedProject& project, Viewpoint viewpoint) {
    runner_.stop();
    openBuild(app::toQString(project.project.rootDir()));
    client_.setScene(project.scene, viewpoint);
    sceneTree_->setScene(project.scene);
    inspector_->setScene(project.scene);
    setDocksAvailable(true);
    pages_->setCurrentWidget(pane_);
    updateTitle();
    if (pane_->viewport() == nullptr)
        startRendering();
    log::info("Editor", "opened {}: {} entities", paths::toUtf8(project.project.rootDir()),
              project.scene->size());
    if (!project.sceneProblem.isEmpty())
        session_.reportFailure(this, project.sceneProblem);
}

void MainWindow::showStartPage() {
    recent_->showInHub();
    setDocksAvailable(false);
    pages_->setCurrentWidget(hub_);
    updateTitle();
}

void MainWindow::askForProject() {
    auto* dialog = new QFileDialog(this, tr("Open Project"), app::toQString(projectsDir()));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::open);
    dialog->open();
}

void MainWindow::askForNewProject(ProjectTemplate start) {
    auto* dialog = new NewProjectDialog(start, this);
    connect(dialog, &NewProjectDialog::projectRequested, this, &MainWindow::create);
    dialog->open();
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
    build_->setWatching(true);
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
void MainWindow::setDocksAvailable(bool on) {
    for (QAction* action : projectActions_)
        action->setEnabled(on);
    if (on == docksAvailable_)
        return;
    docksAvailable_ = on;
    if (on)
        restoreState(layout_, kLayoutVersion);
    else
        layout_ = saveState(kLayoutVersion);
    toolBar_->setVisible(on);
    if (on)
        return;
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        dock->hide();
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
    auto* box = new QMessageBox(QMessageBox::NoIcon, tr("About Tarvik"),
                                tr("Tarvik Editor %1").arg(QCoreApplication::applicationVersion()),
                                QMessageBox::Ok, this);
    box->setInformativeText(
        tr("Built with Qt %1. Rendering with Vulkan on %2.")
            .arg(qVersion(), status_->gpu().isEmpty() ? tr("no GPU yet") : status_->gpu()));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace tarvik::editor
