#include <tarvik/project/Project.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <gtest/gtest.h>

#include <filesystem>

namespace tarvik {
namespace {

TEST(SampleTest, EverySampleOpensWithItsScene) {
    int samples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TARVIK_SAMPLES_DIR)) {
        if (!entry.is_directory())
            continue;
        ++samples;
        const auto project = Project::open(entry.path());
        ASSERT_TRUE(project) << project.error().message;
        const auto scene = loadScene(project->rootDir() / project->defaultScene());
        ASSERT_TRUE(scene) << scene.error().message;
        EXPECT_GT(scene->size(), 0U);
        EXPECT_GE(scene->lights().size(), 1U);
        EXPECT_GE(scene->cameras().size(), 1U);
    }
    EXPECT_GE(samples, 1);
}

} // namespace
} // namespace tarvik
