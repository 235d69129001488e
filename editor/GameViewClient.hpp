#pragma once

#include "OpeningView.hpp"

#include <tarvik/app/ViewportClient.hpp>

#include <memory>

namespace tarvik::editor {

// The scene as a game: seen through its own camera. The editor takes none of the input for itself.
class GameViewClient final : public app::ViewportClient {
public:
    explicit GameViewClient(const app::AppOptions& options);

    void setScene(std::shared_ptr<const Scene> scene);

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
    std::shared_ptr<const Scene> scene_;
    render::RenderSettings settings_;
    OpeningView camera_;
};

} // namespace tarvik::editor
