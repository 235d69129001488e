#include "PlayWindow.hpp"

#include "OpenedProject.hpp"
#include "Session.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/Paths.hpp>

#include <QShortcut>

namespace tarvik::editor {

PlayWindow::PlayWindow(Session& session) : session_(session), pane_(new ViewportPane(session.options())) {
    setCentralWidget(pane_);
    resize(1280, 720);
    auto* escape = new QShortcut(QKeySequence::Cancel, this);
    escape->setContext(Qt::ApplicationShortcut);
    connect(escape, &QShortcut::activated, this, &PlayWindow::close);

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
    pane_->client().setScene(opened->scene);
    session_.show(*this);
    pane_->start(session_.context());
}

} // namespace tarvik::editor
