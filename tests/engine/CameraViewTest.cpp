#include <tarvik/scene/CameraView.hpp>

#include <glm/vec4.hpp>
#include <gtest/gtest.h>

namespace tarvik {
namespace {

glm::vec3 project(const CameraView& camera, const glm::vec3& point) {
    const glm::vec4 clip = camera.projection * camera.view * glm::vec4(point, 1.0F);
    return glm::vec3(clip) / clip.w;
}

TEST(CameraViewTest, WorldLandsInVulkansReversedClipSpace) {
    const CameraView camera = lookAt({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, 1.57079633F, 2.0F, 0.5F);
    EXPECT_NEAR(project(camera, {0.0F, 0.0F, 4.5F}).z, 1.0F, 1e-5F) << "near plane";
    EXPECT_NEAR(project(camera, {0.0F, 0.0F, -1e6F}).z, 0.0F, 1e-5F) << "infinity";
    EXPECT_NEAR(project(camera, {0.0F, 5.0F, 0.0F}).y, -1.0F, 1e-5F) << "up is towards -1";
    EXPECT_NEAR(project(camera, {10.0F, 0.0F, 0.0F}).x, 1.0F, 1e-5F) << "right edge, wider than high";
    EXPECT_EQ(camera.position, glm::vec3(0.0F, 0.0F, 5.0F));
}

} // namespace
} // namespace tarvik
