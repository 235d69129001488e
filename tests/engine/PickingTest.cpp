#include <tarvik/scene/Picking.hpp>

#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace tarvik {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

glm::quat turned(float degrees, const glm::vec3& axis) {
    return glm::angleAxis(glm::radians(degrees), axis);
}

Entity entityOf(Mesh mesh, const Transform& transform = {}) {
    Entity entity;
    entity.mesh = mesh;
    entity.transform = transform;
    return entity;
}

struct PickCase {
    const char* name;
    Entity entity;
    Ray ray;
    bool hit;
};

std::ostream& operator<<(std::ostream& out, const PickCase& c) {
    return out << c.name;
}

class Picking : public testing::TestWithParam<PickCase> {};

TEST_P(Picking, HitsExactlyWhatIsSeen) {
    Scene scene("one");
    scene.add(GetParam().entity);
    EXPECT_EQ(pick(scene, GetParam().ray).has_value(), GetParam().hit);
}

// From the front at (x, y).
Ray at(float x, float y) {
    return {{x, y, 5.0F}, {0.0F, 0.0F, -1.0F}};
}

const glm::vec3 kY{0.0F, 1.0F, 0.0F};
const glm::vec3 kZ{0.0F, 0.0F, 1.0F};

INSTANTIATE_TEST_SUITE_P(
    Table, Picking,
    testing::Values(
        PickCase{"Cube", entityOf(Mesh::Cube), at(0.4F, 0.4F), true},
        PickCase{"BesideTheCube", entityOf(Mesh::Cube), at(0.6F, 0.4F), false},
        PickCase{"TurnedCubeReachesFarther", entityOf(Mesh::Cube, {.rotation = turned(45.0F, kZ)}),
                 at(0.6F, 0.0F), true},
        PickCase{"TurnedCubeHasNoCornerThere", entityOf(Mesh::Cube, {.rotation = turned(45.0F, kZ)}),
                 at(0.45F, 0.45F), false},
        PickCase{"ScaledThenTurned",
                 entityOf(Mesh::Cube, {.rotation = turned(90.0F, kZ), .scale = {4.0F, 0.1F, 1.0F}}),
                 at(0.0F, 1.9F), true},
        PickCase{"MovedCube", entityOf(Mesh::Cube, {.position = {3.0F, 0.0F, -100.0F}}), at(3.2F, 0.0F),
                 true},
        PickCase{"MirroredCube", entityOf(Mesh::Cube, {.scale = glm::vec3(-2.0F)}), at(0.9F, 0.0F), true},
        PickCase{"CubeBehind", entityOf(Mesh::Cube, {.position = {0.0F, 0.0F, 7.0F}}), at(0.0F, 0.0F), false},
        PickCase{"CubeAround", entityOf(Mesh::Cube, {.position = {0.0F, 0.0F, 5.0F}}), at(0.0F, 0.0F), false},
        PickCase{"SphereHasNoCorners", entityOf(Mesh::Sphere), at(0.4F, 0.4F), false},
        PickCase{"FlattenedSphere", entityOf(Mesh::Sphere, {.scale = {4.0F, 1.0F, 1.0F}}), at(1.9F, 0.0F),
                 true},
        PickCase{"CylinderFromTheSide", entityOf(Mesh::Cylinder), at(0.45F, 0.45F), true},
        PickCase{"CylinderFromAbove", entityOf(Mesh::Cylinder), {{0.45F, 5.0F, 0.45F}, -kY}, false},
        PickCase{"PlaneFromAbove", entityOf(Mesh::Plane), {{0.4F, 5.0F, 0.4F}, -kY}, true},
        PickCase{"PlaneFromBelow", entityOf(Mesh::Plane), {{0.4F, -5.0F, 0.4F}, kY}, true},
        PickCase{"PlaneEdgeOn", entityOf(Mesh::Plane), at(0.0F, 0.0F), false},
        PickCase{"ScaleOfZero", entityOf(Mesh::Cube, {.scale = glm::vec3(0.0F)}), at(0.1F, 0.0F), false},
        PickCase{"NoMesh", entityOf(Mesh::None), at(0.0F, 0.0F), false},
        PickCase{"NoNumber", entityOf(Mesh::Sphere, {.position = glm::vec3(kNan)}), at(0.0F, 0.0F), false},
        PickCase{"RayOfNoNumber", entityOf(Mesh::Cube), {{0.0F, 0.0F, 5.0F}, glm::vec3(kNan)}, false}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(PickTest, TheNearerOneWinsWhateverTheirOrder) {
    for (const bool groundFirst : {true, false}) {
        Scene scene("ground and box");
        const Entity ground = entityOf(Mesh::Plane, {.scale = glm::vec3(40.0F)});
        const Entity box = entityOf(Mesh::Cube, {.position = {0.0F, 0.5F, 0.0F}});
        scene.add(groundFirst ? ground : box);
        scene.add(groundFirst ? box : ground);
        const std::size_t groundIndex = groundFirst ? 0 : 1;
        const glm::vec3 eye{0.0F, 5.0F, 5.0F};
        EXPECT_EQ(pick(scene, {eye, glm::normalize(-eye)}), 1 - groundIndex);
        EXPECT_EQ(pick(scene, {{0.0F, 5.0F, 0.8F}, -kY}), groundIndex) << "beside the box";
    }
    EXPECT_EQ(pick(Scene("empty"), at(0.0F, 0.0F)), std::nullopt);
}

TEST(RayTest, PassesThroughWhatIsSeenAtThatPoint) {
    const glm::vec3 eye{1000.0F, 30.0F, -2000.0F};
    const CameraView views[] = {lookAt(eye, {990.0F, 0.0F, -2040.0F}, 0.9F, 1.7F, 0.1F),
                                lookAlong(eye, turned(200.0F, kY), 1.2F, 0.5F, 2.0F)};
    for (const CameraView& view : views) {
        for (const glm::vec2 ndc : {glm::vec2(0.0F), glm::vec2(-1.0F, -1.0F), glm::vec2(0.3F, 0.8F)}) {
            const Ray ray = rayThrough(view, ndc);
            const auto seen = [&](float distance) {
                return view.projection * view.view * glm::vec4(ray.origin + distance * ray.direction, 1.0F);
            };
            EXPECT_NEAR(glm::length(ray.direction), 1.0F, 1e-5F);
            EXPECT_NEAR(seen(0.0F).z / seen(0.0F).w, 1.0F, 0.02F) << "starts at the near plane";
            EXPECT_NEAR(seen(100.0F).x / seen(100.0F).w, ndc.x, 1e-3F);
            EXPECT_NEAR(seen(100.0F).y / seen(100.0F).w, ndc.y, 1e-3F);
        }
    }
}

} // namespace
} // namespace tarvik
