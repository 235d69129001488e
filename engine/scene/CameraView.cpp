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

} // namespace

CameraView lookAt(const glm::vec3& eye, const glm::vec3& target, float fovY, float aspect, float nearPlane) {
    const glm::vec3 forward = glm::normalize(target - eye);
    const float focal = 1.0F / std::tan(fovY / 2.0F);
    CameraView camera;
    camera.position = eye;
    camera.view = glm::lookAtRH(eye, target, upFor(forward));
    camera.projection = glm::mat4(0.0F);
    camera.projection[0][0] = focal / aspect;
    camera.projection[1][1] = -focal;
    camera.projection[2][3] = -1.0F;
    camera.projection[3][2] = nearPlane;
    return camera;
}

} // namespace tarvik
