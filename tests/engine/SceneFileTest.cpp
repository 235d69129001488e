#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace tarvik {

using namespace test;

TEST(SceneFileTest, EveryFieldSurvivesLoadingAndSaving) {
    const TemporaryFolder folder;
    const auto file = folder / "Main.lscene";
    const auto copy = folder / "new/Copy.lscene";
    writeText(file, R"({"name": "Odd \"name\" 🎮", "entities": [
        {"name": "straight up", "position": [0, 0, 0], "rotation": [90, 40, 0]},
        {"name": "full", "position": [0.1, -200000, 3], "rotation": [30, 90, 45], "scale": [0.001, 2, 3],
         "mesh": "cylinder", "colour": "#0102fe",
         "light": {"kind": "point", "colour": "#ffc800", "intensity": 0, "range": 2.5},
         "camera": {"fovY": 40, "near": 0.05}, "behaviour": "Spinner"}]})");
    const auto scene = loadScene(file);
    ASSERT_EQ(errorOf(scene), "<success>");
    ASSERT_EQ(errorOf(saveScene(*scene, copy)), "<success>");
    EXPECT_EQ(readJsonFile(copy).value(), readJsonFile(file).value());
    EXPECT_EQ(scene->count(Mesh::Cylinder), 1U);
    const Entity full = scene->entity(1);
    // Degrees of pitch, yaw and roll, applied in reverse.
    const glm::vec3 forward = full.transform.rotation * glm::vec3(0.0F, 0.0F, -1.0F);
    EXPECT_LT(glm::distance(forward, glm::vec3(-std::sqrt(0.75F), 0.5F, 0.0F)), 1e-5F);
    EXPECT_EQ(full.light.value().range, 2.5F);
    EXPECT_EQ(full.camera.value().nearPlane, 0.05F);
}

TEST(SceneFileTest, WrongValueIsReportedWithItsPlaceEntityAndField) {
    const std::tuple<const char*, int, const char*> cases[] = {
        {R"({"name": "Lamp", "position": [1, 2]})", 48,
         "\"Lamp\": \"position\" must be a list of three numbers"},
        {R"({"position": [1, "2", 3]})", 32, "\"position\" must be a number from"},
        {R"({"name": "]\"}", "scale": [1, 0, 1]})", 45, "\"scale\""},
        {R"({"mesh": "cube", "mesh" : "Cube"})", 45,
         "\"mesh\" must be one of none, cube, sphere, cylinder, plane"},
        {R"({"colour": "#12345g"})", 30, "\"colour\""},
        {R"({"light": {"range": 1, "kind": "spot"}})", 50, "\"light.kind\""},
        {R"({"camera": {"fovY": 180}})", 39, "\"camera.fovY\""},
        {R"(3)", 19, "an object is expected, not a number"},
    };
    const TemporaryFolder folder;
    const auto file = folder / "M\xc3\xbcll\n.lscene";
    for (const auto& [entity, column, reason] : cases) {
        writeText(file, fmt::format("{{\"entities\": [{{}}, {}, {{}}]}}", entity));
        const std::string error = errorOf(loadScene(file));
        const std::string start = fmt::format("{}:1:{}: entities[1] ", file.native(), column);
        EXPECT_TRUE(error.starts_with(start) && error.contains(reason)) << error;
    }
    for (const char* content : {"", "{}", R"({"entities": 3})", R"({"name": 1, "entities": []})"}) {
        writeText(file, content);
        EXPECT_TRUE(errorOf(loadScene(file)).starts_with(file.native() + ":1:")) << content;
    }
}

TEST(SceneFileTest, SceneThatCouldNotBeLoadedAgainIsNotSaved) {
    const TemporaryFolder folder;
    const auto file = folder / "s.lscene";
    writeText(file, "before");
    Scene broken("s");
    broken.add({.transform = {.position = glm::vec3(std::nanf(""))}});
    EXPECT_TRUE(errorOf(saveScene(broken, file)).contains("\"position\""));
    EXPECT_EQ(readText(file), "before");
}

} // namespace tarvik
