#include "EditorCamera.hpp"

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/gtc/constants.hpp>

#include <algorithm>
#include <cmath>

namespace tarvik::editor {
namespace {

constexpr float kRadiansPerPixel = 0.004F;
constexpr float kRunning = 4.0F; // times as fast
constexpr float kSlowest = 0.05F;
constexpr float kFastest = 1000.0F;
constexpr float kSpeedPerNotch = 1.25F;
constexpr float kDistancePerNotch = 0.85F;
constexpr float kNearestPivot = 0.2F;
constexpr float kFarthest = 1e6F; // metres; scene files go no farther either
constexpr float kMargin = 1.15F;  // around what is framed

} // namespace

EditorCamera::EditorCamera(const CameraView& view, float pivotDistance)
    : position_(view.position),
      // From the direction to the right, which unlike the one ahead is never vertical.
      yaw_(std::atan2(-view.view[2][0], view.view[0][0])),
      pitch_(std::asin(std::clamp(-view.view[1][2], -1.0F, 1.0F))),
      pivotDistance_(std::clamp(pivotDistance, kNearestPivot, kFarthest)) {}

CameraView EditorCamera::view(const Camera& lens, float aspect) const {
    return lookAlong(position_, orientation(), lens.fovY, aspect, lens.nearPlane);
}

void EditorCamera::look(const glm::vec2& drag) {
    yaw_ = std::remainder(yaw_ - drag.x * kRadiansPerPixel, glm::two_pi<float>());
    pitch_ = std::clamp(pitch_ - drag.y * kRadiansPerPixel, -glm::half_pi<float>(), glm::half_pi<float>());
}

void EditorCamera::fly(const glm::vec3& direction, Pace pace, float seconds) {
    const glm::quat turned = orientation();
    const glm::vec3 way =
        turned * glm::vec3(direction.x, 0.0F, -direction.z) + glm::vec3(0.0F, direction.y, 0.0F);
    // Two keys at once are no faster than one.
    const float length = std::max(glm::length(way), 1.0F);
    const float speed = pace == Pace::Run ? kRunning * speed_ : speed_;
    moveTo(position_ + way * (speed * seconds / length));
}

void EditorCamera::changeSpeed(float notches) {
    speed_ = std::clamp(speed_ * std::pow(kSpeedPerNotch, notches), kSlowest, kFastest);
}

void EditorCamera::orbit(const glm::vec2& drag) {
    const glm::vec3 pivot = position_ + pivotDistance_ * ahead();
    look(drag);
    moveTo(pivot - pivotDistance_ * ahead());
}

void EditorCamera::pan(const glm::vec2& drag, const Camera& lens, float aspect) {
    const float halfHeight = pivotDistance_ * std::tan(0.5F * lens.fovY);
    moveTo(position_ + orientation() * glm::vec3(-drag.x * aspect * halfHeight, drag.y * halfHeight, 0.0F));
}

// At the pivot it pushes the pivot on: a wheel that does nothing would seem broken.
void EditorCamera::dolly(float notches) {
    const float wanted = std::min(pivotDistance_ * std::pow(kDistancePerNotch, notches), kFarthest);
    moveTo(position_ + (pivotDistance_ - wanted) * ahead());
    pivotDistance_ = std::max(wanted, kNearestPivot);
}

void EditorCamera::frame(const Sphere& sphere, const Camera& lens, float aspect) {
    const float halfAngle = std::atan(std::tan(0.5F * lens.fovY) * std::min(aspect, 1.0F));
    const float seenWhole = kMargin * sphere.radius / std::sin(halfAngle);
    const float notCutOff = sphere.radius + 2.0F * lens.nearPlane;
    pivotDistance_ = std::clamp(std::max(seenWhole, notCutOff), kNearestPivot, kFarthest);
    moveTo(sphere.centre - pivotDistance_ * ahead());
}

glm::quat EditorCamera::orientation() const {
    return glm::angleAxis(yaw_, glm::vec3(0.0F, 1.0F, 0.0F)) *
           glm::angleAxis(pitch_, glm::vec3(1.0F, 0.0F, 0.0F));
}

glm::vec3 EditorCamera::ahead() const {
    return orientation() * glm::vec3(0.0F, 0.0F, -1.0F);
}

void EditorCamera::moveTo(const glm::vec3& position) {
    position_ = glm::clamp(position, -kFarthest, kFarthest);
}

} // namespace tarvik::editor
