#include "PlayWindow.hpp"

#include "OpenedProject.hpp"
#include "Session.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QShortcut>

namespace tarvik::editor {

PlayWindow::PlayWindow(Session& session)
    : session_(session),
      client_(session.options()),
      pane_(new ViewportPane(client_)) {
    setCentralWidget(pane_);
    resize(1280, 720);
    auto* escape = new QShortcut(QKeySequence::Cancel, this);
    escape->setContext(Qt::ApplicationShortcut);
    connect(escape, &QShortcut::activated, this, &PlayWindow::escape);

    session.watch(*pane_);
    connect(&session, &Session::contextAboutToChange, pane_, &ViewportPane::stop);
    connect(&session, &Session::contextChanged, pane_, [this] { pane_->start(session_.context()); });
}

PlayWindow::~PlayWindow() {
    pane_->stop();
}

void PlayWindow::play() {
    const auto opened = openProject(app::toPath(session_.options().projectDir), session_.options().scene);
    const QString problem = opened ? opened->sceneProblem : QString::fromStdString(opened.error().message);
    if (!problem.isEmpty()) {
        session_.reportFailure(nullptr, problem, AfterFailure::Quit);
        return;
    }
    setWindowTitle(QString::fromStdString(opened->project.name()));
    client_.setScene(opened->scene);
    session_.show(*this);
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
