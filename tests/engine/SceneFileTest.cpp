#include "TemporaryFolder.hpp"

#include <tarvik/scene/SceneFile.hpp>

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarvik {
namespace {

using namespace test;

// How far two rotations are apart, whichever of its two signs each quaternion has.
float difference(const glm::quat& a, const glm::quat& b) {
    return 1.0F - std::abs(glm::dot(a, b));
}

TEST(SceneFileTest, EveryFieldSurvivesSavingAndLoading) {
    Scene scene("Odd \"name\" \xf0\x9f\x8e\xae");
    scene.add({.name = "plain",
               .transform = {},
               .mesh = Mesh::None,
               .colour = {},
               .light = {},
               .camera = {},
               .behaviour = {}});
    scene.add({.name = "full",
               .transform = {.position = {0.1F, -2e5F, 3.0F},
                             .rotation = glm::normalize(glm::quat(0.5F, 0.1F, -0.7F, 0.3F)),
                             .scale = {0.001F, 2.0F, 3.0F}},
               .mesh = Mesh::Cylinder,
               .colour = {1, 2, 254},
               .light = Light{LightKind::Point, {255, 200, 0}, 0.0F, 2.5F},
               .camera = Camera{0.7F, 0.05F},
               .behaviour = "Spinner"});
    const TemporaryFolder folder;
    const auto file = folder / "new/Main.lscene";
    ASSERT_TRUE(saveScene(scene, file));
    const auto loaded = loadScene(file);
    ASSERT_TRUE(loaded) << loaded.error().message;
    EXPECT_EQ(loaded->name(), scene.name());
    ASSERT_EQ(loaded->size(), 2U);
    EXPECT_EQ(loaded->count(Mesh::Cylinder), 1U);
    EXPECT_FALSE(loaded->entity(0).light || loaded->entity(0).camera);
    const Entity full = loaded->entity(1);
    EXPECT_EQ(full.transform.position, scene.transforms()[1].position);
    EXPECT_EQ(full.transform.scale, scene.transforms()[1].scale);
    EXPECT_LT(difference(full.transform.rotation, scene.transforms()[1].rotation), 1e-6F);
    EXPECT_EQ(full.colour, (Colour{1, 2, 254}));
    EXPECT_EQ(full.behaviour, "Spinner");
    ASSERT_TRUE(full.light && full.camera);
    EXPECT_EQ(full.light->kind, LightKind::Point);
    EXPECT_EQ(full.light->colour, (Colour{255, 200, 0}));
    EXPECT_EQ(full.light->intensity, 0.0F);
    EXPECT_EQ(full.light->range, 2.5F);
    EXPECT_NEAR(full.camera->fovY, 0.7F, 1e-5F);
    EXPECT_EQ(full.camera->nearPlane, 0.05F);
    EXPECT_TRUE(contains(readText(file), "0.1,")) << "numbers are written as short as they are meant";
}

TEST(SceneFileTest, RotationsSurviveInEveryOctantAndAtThePoles) {
    Scene scene("s");
    for (const float pitch : {-90.0F, -89.9F, -30.0F, 0.0F, 60.0F, 89.99F, 90.0F})
        for (const float yaw : {-179.0F, -90.0F, 0.0F, 45.0F, 180.0F})
            for (const float roll : {-120.0F, 0.0F, 33.0F}) {
                Entity entity;
                entity.transform.rotation = glm::angleAxis(glm::radians(yaw), glm::vec3(0.0F, 1.0F, 0.0F)) *
                                            glm::angleAxis(glm::radians(pitch), glm::vec3(1.0F, 0.0F, 0.0F)) *
                                            glm::angleAxis(glm::radians(roll), glm::vec3(0.0F, 0.0F, 1.0F));
                scene.add(entity);
            }
    const TemporaryFolder folder;
    ASSERT_TRUE(saveScene(scene, folder / "s.lscene"));
    const auto loaded = loadScene(folder / "s.lscene");
    ASSERT_TRUE(loaded) << loaded.error().message;
    for (std::size_t index = 0; index < scene.size(); ++index)
        EXPECT_LT(difference(loaded->transforms()[index].rotation, scene.transforms()[index].rotation), 1e-5F)
            << index;
}

TEST(SceneFileTest, RotationIsDegreesOfPitchYawAndRollAppliedInReverse) {
    const TemporaryFolder folder;
    writeText(folder / "s.lscene", R"({"entities": [{"rotation": [30, 90, 45]}]})");
    const auto scene = loadScene(folder / "s.lscene");
    ASSERT_TRUE(scene) << scene.error().message;
    EXPECT_EQ(scene->name(), "s");
    const glm::vec3 forward = scene->transforms()[0].rotation * glm::vec3(0.0F, 0.0F, -1.0F);
    EXPECT_LT(glm::distance(forward, glm::vec3(-std::sqrt(0.75F), 0.5F, 0.0F)), 1e-5F);
}

TEST(SceneFileTest, WrongValueIsReportedWithFileEntityAndField) {
    struct Case {
        const char* entity;
        const char* reason;
    };
    const Case cases[] = {
        {R"(3)", "an object is expected"},
        {R"({"name": 3})", "\"name\" must be a text, not 3"},
        {R"({"name": "Lamp", "position": [1, 2]})", "\"Lamp\": \"position\" must be a list of three numbers"},
        {R"({"position": {"x": 1}})", "\"position\""},
        {R"({"position": [1, "2", 3]})", "\"position\" must be a number from"},
        {R"({"position": [1, 2, 1e300]})", "not 1e+300"},
        {R"({"position": [1, null, 3]})", "not null"},
        {R"({"rotation": [0, 1e7, 0]})", "\"rotation\""},
        {R"({"scale": [1, 0, 1]})", "\"scale\""},
        {R"({"mesh": "Cube"})", "\"mesh\" must be one of none, cube, sphere, cylinder, plane"},
        {R"({"mesh": 1})", "\"mesh\""},
        {R"({"colour": "red"})", "\"colour\""},
        {R"({"colour": "#12345g"})", "\"colour\""},
        {R"({"colour": "#-12345"})", "\"colour\""},
        {R"({"colour": [1, 2, 3]})", "\"colour\""},
        {R"({"light": true})", "\"light\" must be an object"},
        {R"({"light": {"kind": "spot"}})", "\"light.kind\""},
        {R"({"light": {"intensity": -1}})", "\"light.intensity\""},
        {R"({"light": {"range": 0}})", "\"light.range\""},
        {R"({"camera": {"fovY": 180}})", "\"camera.fovY\""},
        {R"({"camera": {"near": 0}})", "\"camera.near\""},
        {R"({"behaviour": []})", "\"behaviour\""},
    };
    const TemporaryFolder folder;
    const auto file = folder / "M\xc3\xbcll\n.lscene";
    for (const Case& each : cases) {
        writeText(file, fmt::format("{{\"entities\": [{{}}, {}, {{}}]}}", each.entity));
        const auto scene = loadScene(file);
        ASSERT_FALSE(scene) << each.entity;
        EXPECT_TRUE(scene.error().message.starts_with(file.native() + ": entities[1] "))
            << scene.error().message;
        EXPECT_TRUE(contains(scene.error().message, each.reason)) << scene.error().message;
    }
    for (const char* content : {"", "{}", R"({"entities": 3})", R"({"name": 1, "entities": []})"}) {
        writeText(file, content);
        const auto scene = loadScene(file);
        ASSERT_FALSE(scene) << content;
        EXPECT_TRUE(scene.error().message.starts_with(file.native())) << scene.error().message;
    }
}

TEST(SceneFileTest, SceneThatCouldNotBeLoadedAgainIsNotSaved) {
    const TemporaryFolder folder;
    const auto file = folder / "s.lscene";
    Scene scene("s");
    scene.add({});
    ASSERT_TRUE(saveScene(scene, file));
    const std::string before = readText(file);
    for (const float value : {std::numeric_limits<float>::infinity(), std::nanf("")}) {
        Scene broken("s");
        Entity entity;
        entity.name = "Broken";
        entity.transform.position.y = value;
        broken.add(entity);
        const auto saved = saveScene(broken, file);
        ASSERT_FALSE(saved);
        EXPECT_TRUE(contains(saved.error().message, "\"Broken\": \"position\"")) << saved.error().message;
    }
    Scene unwritable("\xff");
    EXPECT_FALSE(saveScene(unwritable, file));
    EXPECT_EQ(readText(file), before);
}

} // namespace
} // namespace tarvik
