#pragma once

#include <tarvik/scene/Export.hpp>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

namespace tarvik {

// How a scene is seen. Right-handed world, y up; the projection maps to Vulkan's clip space: y downwards,
// depth from 1 at the near plane to 0 at infinity (reversed, for precision far away).
struct CameraView {
    glm::mat4 view{1.0F};
    glm::mat4 projection{1.0F};
    glm::vec3 position{0.0F};
};

// A perspective camera at eye that looks at target, up being y. fovY in radians, near plane in metres;
// eye and target must differ.
[[nodiscard]] TARVIK_SCENE_API CameraView lookAt(const glm::vec3& eye, const glm::vec3& target, float fovY,
                                                 float aspect, float nearPlane);

// The same, looking along -z turned by the orientation, up being y turned likewise: every direction is as
// good as any other. The orientation is of length one.
[[nodiscard]] TARVIK_SCENE_API CameraView lookAlong(const glm::vec3& eye, const glm::quat& orientation,
                                                    float fovY, float aspect, float nearPlane);

} // namespace tarvik
