#pragma once

#include "GameRunner.hpp"
#include "GameViewClient.hpp"
#include "OpenedProject.hpp"

#include <QMainWindow>

#include <memory>

namespace tarvik::editor {

class ProjectBuild;
class Session;
class ViewportPane;

// A project's game alone.
class PlayWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit PlayWindow(Session& session);
    ~PlayWindow() override;

    // Shows the window and starts the game when the project has been read, and its behaviours built where it
    // has their sources; a failure ends the program.
    void play();

private:
    void take(const std::expected<OpenedProject, Error>& opened);
    void begin();
    void escape();

    Session& session_;
    GameViewClient client_;
    std::unique_ptr<ProjectBuild> build_;
    GameRunner runner_;
    ViewportPane* pane_;
};

} // namespace tarvik::editor
