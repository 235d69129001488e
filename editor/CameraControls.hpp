#pragma once

#include "EditorCamera.hpp"
#include "OpeningView.hpp"

#include <tarvik/input/InputState.hpp>

#include <Qt>

#include <glm/vec2.hpp>

#include <cstdint>
#include <optional>

namespace tarvik::editor {

// Where a scene is seen from: where it opens, or where the user has gone before.
enum class Viewpoint : std::uint8_t { New, Kept };

// The editor's camera in the user's hands. The scene opens with a camera that moves by itself; the first
// input that is meant for the camera takes over from where that is. What is held is asked of the input state
// every frame: a release that never comes leaves nothing stuck here.
class CameraControls final {
public:
    explicit CameraControls(const app::AppOptions& options) : opening_(options) {}

    // Null is an empty scene.
    void show(const Scene* scene, Viewpoint viewpoint);

    // To be told of every press and move, in normalised device coordinates.
    void pointerAt(const glm::vec2& ndc, Qt::KeyboardModifiers modifiers);
    // A left drag is the camera's.
    [[nodiscard]] bool ownsLeftButton() const { return alt_; }

    // Once a frame.
    void update(float seconds, const InputState& input, bool windowActive);
    void frame(const Sphere& sphere);

    [[nodiscard]] CameraView view(float aspect);
    // As the user sees it: in the last frame, whatever was captured since.
    [[nodiscard]] CameraView seen() const;

private:
    [[nodiscard]] CameraView viewAt(float aspect) const;
    EditorCamera& takenOver();
    static void fly(EditorCamera& camera, float seconds, const InputState& input);

    OpeningView opening_;
    std::optional<EditorCamera> camera_; // once the user has taken over
    float aspect_ = 1.0F;                // of the last frame
    bool frameBegun_ = false;            // the next view is that of a frame
    bool alt_ = false;
    glm::vec2 pointer_{0.0F};
    glm::vec2 drag_{0.0F}; // of the pointer, since the last frame
};

} // namespace tarvik::editor
