#pragma once

#include <tarvik/app/ViewportClient.hpp>

#include <glm/vec3.hpp>

#include <memory>
#include <optional>

namespace tarvik::app {
struct AppOptions;
}

namespace tarvik::editor {

// Shows a scene through a camera that slowly circles it, or, when the game is played, through the scene's own
// camera.
class SceneViewClient final : public app::ViewportClient {
public:
    explicit SceneViewClient(const app::AppOptions& options);

    // Null shows an empty scene.
    void setScene(std::shared_ptr<const Scene> scene);
    void setGrid(bool on) { settings_.grid = on; }

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
    void placeCamera();

    std::shared_ptr<const Scene> scene_;
    render::RenderSettings settings_;
    std::optional<glm::vec3> chosenEye_;
    std::optional<glm::vec3> chosenTarget_;
    bool play_;
    bool still_;
    bool circling_ = true;

    // The camera's start; it circles the target from there.
    glm::vec3 eye_{0.0F};
    glm::vec3 target_{0.0F};
    Camera lens_;
    float farFactor_ = 1.0F; // how much farther away the camera is on the circle's other side
    float angle_ = 0.0F;     // radians
};

} // namespace tarvik::editor
