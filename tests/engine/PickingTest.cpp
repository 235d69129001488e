#include <tarvik/scene/Picking.hpp>

#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace tarvik {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

glm::quat turned(float degrees, const glm::vec3& axis) {
    return glm::angleAxis(glm::radians(degrees), axis);
}

Entity placed(Mesh mesh, const Transform& transform = {}) {
    return {.transform = transform, .mesh = mesh};
}

glm::vec3 seen(const CameraView& view, const glm::vec3& point) {
    const glm::vec4 clip = view.projection * view.view * glm::vec4(point, 1.0F);
    return glm::vec3(clip) / clip.w;
}

// From the front at (x, y).
Ray at(float x, float y) {
    return {{x, y, 5.0F}, {0.0F, 0.0F, -1.0F}};
}

const glm::vec3 kY{0.0F, 1.0F, 0.0F};
const glm::vec3 kZ{0.0F, 0.0F, 1.0F};

TEST(PickTest, HitsExactlyWhatIsSeen) {
    const std::tuple<const char*, Entity, Ray, bool> cases[] = {
        {"cube", placed(Mesh::Cube), at(0.4F, 0.4F), true},
        {"turned", placed(Mesh::Cube, {.rotation = turned(45.0F, kZ)}), at(0.6F, 0.0F), true},
        {"scaled, then turned",
         placed(Mesh::Cube, {.rotation = turned(90.0F, kZ), .scale = {4.0F, 0.1F, 1.0F}}), at(0.0F, 1.9F),
         true},
        {"mirrored", placed(Mesh::Cube, {.scale = glm::vec3(-2.0F)}), at(0.9F, 0.0F), true},
        {"behind", placed(Mesh::Cube, {.position = {0.0F, 0.0F, 7.0F}}), at(0.0F, 0.0F), false},
        {"around", placed(Mesh::Cube, {.position = {0.0F, 0.0F, 5.0F}}), at(0.0F, 0.0F), false},
        {"sphere has no corners", placed(Mesh::Sphere), at(0.4F, 0.4F), false},
        {"cylinder from the side", placed(Mesh::Cylinder), at(0.45F, 0.45F), true},
        {"cylinder from above", placed(Mesh::Cylinder), {{0.45F, 5.0F, 0.45F}, -kY}, false},
        {"plane from above", placed(Mesh::Plane), {{0.4F, 5.0F, 0.4F}, -kY}, true},
        {"plane from below", placed(Mesh::Plane), {{0.4F, -5.0F, 0.4F}, kY}, true},
        {"scale of zero", placed(Mesh::Cube, {.scale = glm::vec3(0.0F)}), at(0.1F, 0.0F), false},
        {"no number", placed(Mesh::Sphere, {.position = glm::vec3(kNan)}), at(0.0F, 0.0F), false},
    };
    for (const auto& [name, entity, ray, hit] : cases) {
        Scene scene("one");
        scene.add(entity);
        EXPECT_EQ(pick(scene, ray).has_value(), hit) << name;
    }
}

TEST(PickTest, TheNearerOneWinsWhateverTheirOrder) {
    Scene scene("floor, box and ceiling");
    for (const float height : {-1.0F, 0.0F, 2.0F})
        scene.add(placed(height == 0.0F ? Mesh::Cube : Mesh::Plane, {.position = {0.0F, height, 0.0F}}));
    EXPECT_EQ(pick(scene, {{0.0F, 1.0F, 0.0F}, -kY}), 1U);
    EXPECT_EQ(pick(scene, {{0.0F, 5.0F, 0.0F}, -kY}), 2U);
    EXPECT_EQ(pick(scene, {{0.0F, -5.0F, 0.0F}, kY}), 0U);
}

TEST(CameraViewTest, WorldLandsInVulkansReversedClipSpace) {
    const CameraView camera = lookAt({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, 1.57079633F, 2.0F, 0.5F);
    EXPECT_NEAR(seen(camera, {0.0F, 0.0F, 4.5F}).z, 1.0F, 1e-5F) << "near plane";
    EXPECT_NEAR(seen(camera, {0.0F, 0.0F, -1e6F}).z, 0.0F, 1e-5F) << "infinity";
    EXPECT_NEAR(seen(camera, {0.0F, 5.0F, 0.0F}).y, -1.0F, 1e-5F) << "up is towards -1";
    EXPECT_NEAR(seen(camera, {10.0F, 0.0F, 0.0F}).x, 1.0F, 1e-5F) << "right edge, wider than high";
    EXPECT_EQ(camera.position, glm::vec3(0.0F, 0.0F, 5.0F));
}

TEST(RayTest, PassesThroughWhatIsSeenAtThatPoint) {
    const glm::vec3 eye{1000.0F, 30.0F, -2000.0F};
    const CameraView view = lookAt(eye, {990.0F, 0.0F, -2040.0F}, 0.9F, 1.7F, 0.1F);
    for (const glm::vec2 ndc : {glm::vec2(0.0F), glm::vec2(-1.0F, -1.0F), glm::vec2(0.3F, 0.8F)}) {
        const Ray ray = rayThrough(view, ndc);
        EXPECT_NEAR(glm::length(ray.direction), 1.0F, 1e-5F);
        EXPECT_NEAR(seen(view, ray.origin).z, 1.0F, 0.02F) << "starts at the near plane";
        EXPECT_LT(glm::distance(glm::vec2(seen(view, ray.origin + 100.0F * ray.direction)), ndc), 2e-3F);
    }
}

} // namespace
} // namespace tarvik
