#pragma once

#include <tarvik/scene/Scene.hpp>

#include <QObject>
#include <QPointer>

#include <memory>

class QWidget;

namespace tarvik::editor {

class Game;
class ProjectBuild;
class Session;

// Plays a scene of a project: builds its behaviours first, and lets newer ones take over while the game runs.
class GameRunner final : public QObject {
    Q_OBJECT

public:
    // Questions are asked over the window, unless the session is unattended.
    GameRunner(const Session& session, QWidget& window);
    ~GameRunner() override;

    // Ends a game that runs. The build is borrowed; null when no project is open.
    void setBuild(ProjectBuild* build);

    // Begins now, or when the behaviours are built, or not at all: the signals tell.
    void play(std::shared_ptr<const Scene> scene);
    void stop();

    [[nodiscard]] Game* game() const { return game_.get(); } // null while none runs
    [[nodiscard]] bool isStarting() const { return scene_ != nullptr; }

Q_SIGNALS:
    void started();
    void ending(); // the game is about to go
    // The game did not start, because its behaviours could not be built.
    void buildFailed();
    // The game did not start, or goes on with the behaviours that it has.
    void failed(const QString& problem);
    // The user does not want behaviours that crashed, nor a game without them.
    void declined();
    void stateChanged();

private:
    void buildEnded(bool ok, const QString& output);
    void begin();
    [[nodiscard]] bool hasCrashed() const; // the module that is built
    [[nodiscard]] QString loadDir() const;
    void askWhetherToTrust();
    void run(const QString& library);
    void giveUp();

    const Session& session_;
    QWidget& window_;
    ProjectBuild* build_ = nullptr;
    std::shared_ptr<const Scene> scene_; // that is about to be played
    bool buildIsOld_ = false;            // the one that runs began before the scene was to be played
    std::unique_ptr<Game> game_;
    QPointer<QWidget> question_;
};

} // namespace tarvik::editor
