#include <tarvik/scene/Rotation.hpp>

#include <glm/trigonometric.hpp>

#include <algorithm>
#include <cmath>

namespace tarvik {

glm::quat quatFromDegrees(const glm::vec3& degrees) {
    const glm::vec3 angles = glm::radians(degrees);
    return glm::angleAxis(angles.y, glm::vec3(0.0F, 1.0F, 0.0F)) *
           glm::angleAxis(angles.x, glm::vec3(1.0F, 0.0F, 0.0F)) *
           glm::angleAxis(angles.z, glm::vec3(0.0F, 0.0F, 1.0F));
}

glm::vec3 degreesFromQuat(const glm::quat& rotation) {
    const glm::mat3 m = glm::mat3_cast(glm::normalize(rotation));
    const float sinPitch = std::clamp(-m[2][1], -1.0F, 1.0F);
    constexpr float kGimbalLock = 0.999999F;
    const bool locked = std::abs(sinPitch) > kGimbalLock; // yaw and roll turn about one axis: all is yaw
    const float yaw = locked ? std::atan2(-m[0][2], m[0][0]) : std::atan2(m[2][0], m[2][2]);
    const float roll = locked ? 0.0F : std::atan2(m[0][1], m[1][1]);
    return glm::degrees(glm::vec3(std::asin(sinPitch), yaw, roll));
}

} // namespace tarvik
