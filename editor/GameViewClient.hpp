#pragma once

#include "OpeningView.hpp"

#include <tarvik/app/ViewportClient.hpp>

namespace tarvik::editor {

class Game;

// A game alone: it gets all the input, and is seen through its own camera unless the options say otherwise.
class GameViewClient final : public app::ViewportClient {
public:
    explicit GameViewClient(const app::AppOptions& options);

    // Borrowed. Null shows nothing.
    void setGame(Game* game);

    void update(float dt, const InputState& input, bool windowActive) override;
    const Scene* activeScene() override;
    CameraView cameraView(float aspect) override;
    render::RenderSettings renderSettings() override;
    void clicked(glm::vec2 ndc) override;
    bool mousePressed(glm::vec2 ndc, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) override;
    void mouseMoved(glm::vec2 ndc, Qt::KeyboardModifiers modifiers) override;
    void mouseReleased(glm::vec2 ndc, Qt::MouseButton button) override;
    bool canDrop(const QList<QUrl>& urls) override;
    void dropped(const QList<QUrl>& urls, glm::vec2 ndc) override;
    bool keyPressed(int key, Qt::KeyboardModifiers modifiers) override;

private:
    Game* game_ = nullptr;
    render::RenderSettings settings_;
    OpeningView camera_;
    bool ownCamera_; // the game's, where it has one
};

} // namespace tarvik::editor
