#include <tarvik/scene/CameraView.hpp>

#include <glm/ext/matrix_transform.hpp>
#include <glm/geometric.hpp>

#include <cmath>

namespace tarvik {

namespace {

// Along the y axis there is no "up" to see; z takes its place, turned as if the camera had been tilted there.
glm::vec3 upFor(const glm::vec3& forward) {
    constexpr float kAlmostVertical = 0.9999F;
    if (std::abs(forward.y) < kAlmostVertical)
        return {0.0F, 1.0F, 0.0F};
    return {0.0F, 0.0F, forward.y > 0.0F ? 1.0F : -1.0F};
}

glm::mat4 perspective(float fovY, float aspect, float nearPlane) {
    const float focal = 1.0F / std::tan(fovY / 2.0F);
    glm::mat4 projection(0.0F);
    projection[0][0] = focal / aspect;
    projection[1][1] = -focal;
    projection[2][3] = -1.0F;
    projection[3][2] = nearPlane;
    return projection;
}

} // namespace

CameraView lookAt(const glm::vec3& eye, const glm::vec3& target, float fovY, float aspect, float nearPlane) {
    const glm::vec3 forward = glm::normalize(target - eye);
    return {glm::lookAtRH(eye, target, upFor(forward)), perspective(fovY, aspect, nearPlane), eye};
}

CameraView lookAlong(const glm::vec3& eye, const glm::quat& orientation, float fovY, float aspect,
                     float nearPlane) {
    const glm::mat4 turned = glm::mat4_cast(glm::conjugate(orientation));
    return {glm::translate(turned, -eye), perspective(fovY, aspect, nearPlane), eye};
}

} // namespace tarvik
