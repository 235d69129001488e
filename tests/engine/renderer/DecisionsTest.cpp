#include "Gpu.hpp"
#include "InstanceStream.hpp"
#include "PresentTargetImpl.hpp"
#include "Result.hpp"
#include "SwapchainImpl.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <tarvik/scene/CameraView.hpp>

#include <glm/ext/matrix_clip_space.hpp>
#include <glm/gtc/matrix_access.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace tarvik {
namespace {

constexpr auto kFifo = VK_PRESENT_MODE_FIFO_KHR;
constexpr auto kMailbox = VK_PRESENT_MODE_MAILBOX_KHR;
constexpr auto kImmediate = VK_PRESENT_MODE_IMMEDIATE_KHR;

TEST(PresentModeTest, NeverHoldsTheCallerOnWaylandAndAlwaysFallsBackToFifo) {
    using enum rhi::PresentPolicy;
    using enum rhi::WindowSystem;
    struct Case {
        rhi::PresentPolicy policy;
        rhi::WindowSystem system;
        std::vector<VkPresentModeKHR> offered;
        VkPresentModeKHR chosen;
    };
    for (const Case& c : std::initializer_list<Case>{
             {Vsync, Other, {kImmediate, kMailbox, kFifo}, kFifo},
             {Vsync, Wayland, {kMailbox, kFifo}, kMailbox},
             {Vsync, Wayland, {kImmediate, kFifo}, kFifo},
             {NoVsync, Other, {kFifo, kImmediate, kMailbox}, kMailbox},
             {NoVsync, Wayland, {kFifo, kImmediate}, kImmediate},
             {NoVsync, Other, {kFifo}, kFifo},
         })
        EXPECT_EQ(rhi::choosePresentMode(c.policy, c.system, c.offered), c.chosen);
}

TEST(GpuChoiceTest, TakesTheBestKindThatCanDoWhatIsNeededAndNamesWhatIsMissing) {
    const std::vector<rhi::GpuCandidate> machine = {
        {.index = 0, .name = "Software", .type = VK_PHYSICAL_DEVICE_TYPE_CPU},
        {.index = 1, .name = "Old", .type = VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU, .missing = "Vulkan 1.3"},
        {.index = 2, .name = "Built in", .type = VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU}};
    EXPECT_EQ(rhi::chooseGpu(machine, std::nullopt).index, 2U);
    EXPECT_EQ(rhi::chooseGpu(machine, 0).index, 0U);
    try {
        FAIL() << rhi::chooseGpu(machine, 1).name;
    } catch (const rhi::UnsupportedHardwareError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("GPU 1, Old, lacks Vulkan 1.3.")) << error.what();
    }
}

TEST(ResultTest, ALostDeviceAndAnOutdatedImageAreToldApart) {
    const auto became = [](VkResult result) {
        return render::frameResult(rhi::imageOutcome(result, "drawing"));
    };
    EXPECT_EQ(became(VK_SUBOPTIMAL_KHR), render::FrameResult::Presented);
    EXPECT_EQ(became(VK_ERROR_OUT_OF_DATE_KHR), render::FrameResult::Skipped);
    EXPECT_THROW(became(VK_ERROR_DEVICE_LOST), rhi::DeviceLostError);
}

TEST(InstanceStreamTest, DetailFollowsTheSizeOnThePictureWhateverTheProjection) {
    const CameraView usual = lookAt({}, {0.0F, 0.0F, -1.0F}, 0.8F, 1.5F, 0.1F);
    const CameraView wide = lookAt({}, {0.0F, 0.0F, -1.0F}, 2.8F, 1.5F, 0.1F);
    const CameraView orthographic{.projection = glm::ortho(-50.0F, 50.0F, -50.0F, 50.0F)};
    struct Case {
        const CameraView& view;
        glm::vec3 position;
        float scale;
        std::uint32_t detailed;
    };
    for (const auto& [view, position, scale, detailed] : std::initializer_list<Case>{
             {usual, {0.0F, 0.0F, -45.0F}, 1.0F, 1},
             {usual, {0.0F, 0.0F, -60.0F}, 1.0F, 0},
             {wide, {20.0F, 0.0F, -3.0F}, 1.0F, 1},
             {orthographic, {0.0F, 0.0F, -0.1F}, 1.0F, 0},
             {orthographic, {0.0F, 0.0F, -100.0F}, 10.0F, 1},
         }) {
        Entity entity;
        entity.mesh = Mesh::Sphere;
        entity.transform.position = position;
        entity.transform.scale = glm::vec3(scale);
        Scene scene("one");
        scene.add(entity);
        render::Instance instance;
        const auto ranges = render::writeInstances(
            scene, {.depthRow = glm::row(view.projection, 3), .focalLength = std::abs(view.projection[1][1])},
            {&instance, 1});
        EXPECT_EQ(ranges[static_cast<std::size_t>(Mesh::Sphere)].nearCount, detailed)
            << position.x << ", " << position.z;
    }
}

TEST(InstanceStreamTest, TintsTheSelectedEntityAlone) {
    Scene scene("five of each");
    for (int i = 0; i < 25; ++i) {
        Entity entity;
        entity.mesh = static_cast<Mesh>(i % 5);
        entity.transform.position.x = i < 10 ? 1.0F : 1000.0F; // near, or far
        entity.colour = {0, 0, static_cast<std::uint8_t>(i)};
        scene.add(entity);
    }
    const auto tinted = [&](std::optional<std::size_t> selected) {
        std::vector<render::Instance> instances(render::instanceCount(scene));
        render::writeInstances(
            scene, {.depthRow = {1.0F, 0.0F, 0.0F, 0.0F}, .focalLength = 2.0F, .selected = selected},
            instances);
        std::vector<float> places;
        for (const auto& instance : instances)
            if (instance.colour[0] != 0)
                places.push_back(instance.position[0]);
        return places;
    };
    EXPECT_EQ(tinted(6), std::vector{1.0F});
    EXPECT_EQ(tinted(24), std::vector{1000.0F});
    EXPECT_TRUE(tinted(5).empty()) << "has no mesh";
    EXPECT_TRUE(tinted(25).empty()) << "does not exist";
    EXPECT_TRUE(tinted(std::nullopt).empty());
}

} // namespace
} // namespace tarvik
