#pragma once

#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Scene.hpp>

#include <glm/vec3.hpp>

#include <optional>

namespace tarvik::app {
struct AppOptions;
}

namespace tarvik::editor {

// How a scene is first seen: through its own camera or from where the options say, slowly circling it unless
// they forbid it; a game's own camera stands still.
class OpeningView final {
public:
    explicit OpeningView(const app::AppOptions& options);

    // Starts anew. Null is an empty scene.
    void show(const Scene* scene);
    void advance(float seconds);

    [[nodiscard]] CameraView view(float aspect) const;
    [[nodiscard]] float distance() const; // to what is looked at, in metres
    [[nodiscard]] const Camera& lens() const { return lens_; }

private:
    [[nodiscard]] glm::vec3 arm() const;

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
