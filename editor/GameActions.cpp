#include "GameActions.hpp"

#include "GameRunner.hpp"
#include "ProjectBuild.hpp"

#include <tarvik/app/Theme.hpp>

#include <QMenuBar>

namespace tarvik::editor {

GameActions::GameActions(QMenuBar& menuBar, GameRunner& runner) : runner_(runner) {
    createGameMenu(menuBar);
    createBehavioursMenu(menuBar);
    connect(&runner, &GameRunner::stateChanged, this, &GameActions::update);
    update();
}

void GameActions::createGameMenu(QMenuBar& menuBar) {
    QMenu* menu = menuBar.addMenu(tr("&Game"));
    play_ = menu->addAction(app::theme::icon("play"), tr("&Play"), QKeySequence("Ctrl+P"), this,
                            &GameActions::playRequested);
    pause_ = menu->addAction(app::theme::icon("pause"), tr("P&ause"));
    pause_->setCheckable(true);
    pause_->setShortcut(QKeySequence("Ctrl+Shift+P"));
    connect(pause_, &QAction::toggled, this, &GameActions::pauseToggled);
    stop_ = menu->addAction(app::theme::icon("stop"), tr("&Stop"), QKeySequence("Ctrl+."), &runner_,
                            &GameRunner::stop);
}

void GameActions::createBehavioursMenu(QMenuBar& menuBar) {
    QMenu* menu = menuBar.addMenu(tr("&Behaviours"));
    newBehaviour_ = menu->addAction(tr("&New Behaviour…"), this, &GameActions::newBehaviourRequested);
    menu->addSeparator();
    buildAction_ = menu->addAction(app::theme::icon("code"), tr("&Build"), QKeySequence("Ctrl+B"), this,
                                   [this] { build_->build(); });
    cancel_ = menu->addAction(tr("&Cancel Build"), this, [this] { build_->cancel(); });
}

void GameActions::setBuild(ProjectBuild* build) {
    if (build_ != nullptr)
        build_->disconnect(this);
    build_ = build;
    if (build_ != nullptr) {
        connect(build_, &ProjectBuild::started, this, &GameActions::update, Qt::QueuedConnection);
        connect(build_, &ProjectBuild::finished, this, &GameActions::update);
        connect(build_, &ProjectBuild::cancelled, this, &GameActions::update);
    }
    update();
}

void GameActions::update() {
    const bool isOpen = build_ != nullptr;
    const bool isPlaying = runner_.game() != nullptr;
    const bool isBuilding = isOpen && build_->busy();
    play_->setEnabled(isOpen && !isPlaying && !runner_.isStarting());
    pause_->setEnabled(isPlaying);
    if (!isPlaying)
        pause_->setChecked(false);
    stop_->setEnabled(isPlaying || runner_.isStarting());
    newBehaviour_->setEnabled(isOpen);
    buildAction_->setEnabled(isOpen && !isBuilding);
    cancel_->setEnabled(isBuilding);
}

} // namespace tarvik::editor
