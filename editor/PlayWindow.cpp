#include "PlayWindow.hpp"

#include "Background.hpp"
#include "Game.hpp"
#include "ProjectBuild.hpp"
#include "Session.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>

#include <QShortcut>

namespace tarvik::editor {

PlayWindow::PlayWindow(Session& session)
    : session_(session),
      client_(session.options()),
      runner_(session, *this),
      pane_(new ViewportPane(client_)) {
    setCentralWidget(pane_);
    resize(1280, 720);
    auto* escape = new QShortcut(QKeySequence::Cancel, this);
    escape->setContext(Qt::ApplicationShortcut);
    connect(escape, &QShortcut::activated, this, &PlayWindow::escape);

    auto* fullScreen = new QShortcut(QKeySequence(Qt::Key_F11), this);
    fullScreen->setContext(Qt::ApplicationShortcut);
    connect(fullScreen, &QShortcut::activated, this,
            [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); });

    connect(&runner_, &GameRunner::started, this, &PlayWindow::begin);
    connect(&runner_, &GameRunner::ending, this, [this] { client_.setGame(nullptr); });
    connect(&runner_, &GameRunner::buildFailed, this, [this] {
        session_.reportFailure(nullptr, tr("The behaviours could not be built; the log says why."),
                               AfterFailure::Quit);
    });
    connect(&runner_, &GameRunner::declined, this, &PlayWindow::close);
    connect(&runner_, &GameRunner::failed, this, [this](const QString& problem) {
        if (runner_.game() != nullptr)
            log::error("Game", "{}", problem.toStdString());
        else
            session_.reportFailure(nullptr, problem, AfterFailure::Quit);
    });

    session.watch(*pane_);
    connect(&session, &Session::contextAboutToChange, pane_, &ViewportPane::stop);
    connect(&session, &Session::contextChanged, pane_, [this] { pane_->start(session_.context()); });
}

PlayWindow::~PlayWindow() {
    pane_->stop();
}

void PlayWindow::play() {
    const app::AppOptions& options = session_.options();
    inBackground(
        this,
        [path = app::toPath(options.projectDir), scene = options.scene] { return openProject(path, scene); },
        [this](const std::expected<OpenedProject, Error>& opened) { take(opened); });
}

void PlayWindow::take(const std::expected<OpenedProject, Error>& opened) {
    const QString problem = opened ? opened->sceneProblem : QString::fromStdString(opened.error().message);
    if (!problem.isEmpty()) {
        session_.reportFailure(nullptr, problem, AfterFailure::Quit);
        return;
    }
    setWindowTitle(QString::fromStdString(opened->project.name()));
    build_ = std::make_unique<ProjectBuild>(app::toQString(opened->project.rootDir()));
    runner_.setBuild(build_.get());
    session_.show(*this);
    runner_.play(opened->scene);
}

void PlayWindow::begin() {
    // A shipped game has no sources; while one is made, its code may change under the player's hands.
    if (build_->builder().hasScripts())
        build_->watch();
    client_.setGame(runner_.game());
    pane_->start(session_.context());
    pane_->setFocus();
}

// Frees the mouse first, then ends the game.
void PlayWindow::escape() {
    app::VulkanViewport* viewport = pane_->viewport();
    if (viewport != nullptr && viewport->input().isHeld(MouseButton::Right))
        viewport->releaseInput();
    else
        close();
}

} // namespace tarvik::editor
