#pragma once

#include "GameViewClient.hpp"

#include <QMainWindow>

namespace tarvik::editor {

class Session;
class ViewportPane;

// A project's game alone.
class PlayWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit PlayWindow(Session& session);
    ~PlayWindow() override;

    // Shows the window and starts the game; a failure ends the program.
    void play();

private:
    void escape();

    Session& session_;
    GameViewClient client_;
    ViewportPane* pane_;
};

} // namespace tarvik::editor
