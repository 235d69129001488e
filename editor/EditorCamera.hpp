#pragma once

#include "EntityBounds.hpp"

#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Scene.hpp>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include <cstdint>

namespace tarvik::editor {

enum class Pace : std::uint8_t { Walk, Run };

// A camera that flies, and that turns around a pivot straight ahead of it. Its horizon is always level, and
// it can look straight up and down. Drags are in logical pixels, y down, unless they say otherwise.
class EditorCamera final {
public:
    // Takes over from a view whose pivot is that far ahead, in metres.
    EditorCamera(const CameraView& view, float pivotDistance);

    [[nodiscard]] CameraView view(const Camera& lens, float aspect) const;

    void look(const glm::vec2& drag);
    // Right, up and ahead, each from -1 to 1; up is the world's.
    void fly(const glm::vec3& direction, Pace pace, float seconds);
    void changeSpeed(float notches);
    void orbit(const glm::vec2& drag);
    // The pivot follows the pointer; the drag is in normalised device coordinates.
    void pan(const glm::vec2& drag, const Camera& lens, float aspect);
    // Towards the pivot, by a share of its distance for each notch.
    void dolly(float notches);
    // Makes the sphere the pivot and moves back until all of it is seen.
    void frame(const Sphere& sphere, const Camera& lens, float aspect);

private:
    [[nodiscard]] glm::quat orientation() const;
    [[nodiscard]] glm::vec3 ahead() const;
    void moveTo(const glm::vec3& position);

    glm::vec3 position_;
    float yaw_;   // radians about y; at zero the camera looks along -z
    float pitch_; // radians upwards
    float pivotDistance_;
    float speed_ = 5.0F; // metres a second
};

} // namespace tarvik::editor
