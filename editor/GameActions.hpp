#pragma once

#include <QList>
#include <QObject>

#include <memory>

class QAction;
class QMenuBar;

namespace tarvik::editor {

class GameRunner;
class ProjectBuild;

// What can be done with the open project's game and its behaviours, for the menu bar and a tool bar.
class GameActions final : public QObject {
    Q_OBJECT

public:
    // Adds the menus. The runner is borrowed.
    GameActions(QMenuBar& menuBar, GameRunner& runner);

    // Borrowed; null when no project is open.
    void setBuild(ProjectBuild* build);

    [[nodiscard]] QAction* play() const { return play_; }
    [[nodiscard]] QAction* pause() const { return pause_; } // checkable
    [[nodiscard]] QAction* stop() const { return stop_; }
    [[nodiscard]] QAction* build() const { return buildAction_; }

Q_SIGNALS:
    void playRequested();
    void pauseToggled(bool on);
    void newBehaviourRequested();

private:
    void createGameMenu(QMenuBar& menuBar);
    void createBehavioursMenu(QMenuBar& menuBar);
    void update();

    GameRunner& runner_;
    ProjectBuild* build_ = nullptr;
    QAction* play_ = nullptr;
    QAction* pause_ = nullptr;
    QAction* stop_ = nullptr;
    QAction* buildAction_ = nullptr;
    QAction* cancel_ = nullptr;
    QAction* newBehaviour_ = nullptr;
};

} // namespace tarvik::editor
