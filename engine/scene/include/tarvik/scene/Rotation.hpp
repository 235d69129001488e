#pragma once

#include <tarvik/scene/Export.hpp>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

namespace tarvik {

// Rotations as people write them: degrees about x, y and z, applied in the order z, x, y: first roll, then
// pitch, then yaw.
[[nodiscard]] TARVIK_SCENE_API glm::quat quatFromDegrees(const glm::vec3& degrees);
// Pitch from -90 to 90, yaw and roll from -180 to 180. Looking straight up or down, all is yaw.
[[nodiscard]] TARVIK_SCENE_API glm::vec3 degreesFromQuat(const glm::quat& rotation);

} // namespace tarvik
