#include "Entities.hpp"
#include "Gpu.hpp"
#include "InstanceStream.hpp"
#include "PresentTargetImpl.hpp"
#include "Result.hpp"
#include "SwapchainImpl.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <glm/ext/matrix_clip_space.hpp>
#include <glm/gtc/matrix_access.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

namespace tarvik {
namespace {

constexpr auto kFifo = VK_PRESENT_MODE_FIFO_KHR;
constexpr auto kMailbox = VK_PRESENT_MODE_MAILBOX_KHR;
constexpr auto kImmediate = VK_PRESENT_MODE_IMMEDIATE_KHR;

TEST(PresentModeTest, HoldsTheCallerNeitherOnWaylandNorWithoutVsync) {
    using enum rhi::PresentPolicy;
    using enum rhi::WindowSystem;
    using Modes = std::vector<VkPresentModeKHR>;
    const std::tuple<rhi::PresentPolicy, rhi::WindowSystem, Modes, VkPresentModeKHR> cases[] = {
        {Vsync, Other, {kImmediate, kMailbox, kFifo}, kFifo},
        {Vsync, Wayland, {kMailbox, kFifo}, kMailbox},
        {NoVsync, Other, {kFifo, kImmediate, kMailbox}, kMailbox},
        {NoVsync, Other, {kFifo, kImmediate}, kImmediate},
        {Vsync, Wayland, {kImmediate, kFifo}, kFifo},
    };
    for (const auto& [policy, system, offered, chosen] : cases)
        EXPECT_EQ(rhi::choosePresentMode(policy, system, offered), chosen);
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

TEST(InstanceStreamTest, TintsTheSelectedEntityAlone) {
    Scene scene("two of each");
    for (int i = 0; i < 10; ++i)
        scene.add(test::entityOf(static_cast<Mesh>(i % 5), {0, 0, 9}, {i < 5 ? 1.0F : 1000.0F, 0.0F, 0.0F}));
    for (const std::size_t selected : {5, 6, 9, 10}) { // the first has no mesh, the last does not exist
        std::vector<render::Instance> instances(render::instanceCount(scene));
        render::writeInstances(
            scene, {.depthRow = {1.0F, 0.0F, 0.0F, 0.0F}, .focalLength = 2.0F, .selected = selected},
            instances);
        std::vector<float> tinted;
        for (const auto& instance : instances)
            if (instance.colour[0] != 0)
                tinted.push_back(instance.position[0]);
        EXPECT_EQ(tinted, selected == 6 || selected == 9 ? std::vector{1000.0F} : std::vector<float>{});
    }
}

TEST(InstanceStreamTest, DetailFollowsTheSizeOnThePictureWhateverTheProjection) {
    const CameraView usual = lookAt({}, {0.0F, 0.0F, -1.0F}, 0.8F, 1.5F, 0.1F);
    const CameraView wide = lookAt({}, {0.0F, 0.0F, -1.0F}, 2.8F, 1.5F, 0.1F);
    const CameraView orthographic{.projection = glm::ortho(-50.0F, 50.0F, -50.0F, 50.0F)};
    const std::tuple<CameraView, glm::vec3, float, std::uint32_t> cases[] = {
        {usual, {0.0F, 0.0F, -45.0F}, 1.0F, 1},          {usual, {0.0F, 0.0F, -60.0F}, 1.0F, 0},
        {wide, {20.0F, 0.0F, -3.0F}, 1.0F, 1},           {orthographic, {0.0F, 0.0F, -0.1F}, 1.0F, 0},
        {orthographic, {0.0F, 0.0F, -100.0F}, 10.0F, 1},
    };
    for (const auto& [view, position, scale, detailed] : cases) {
        Scene scene("one");
        scene.add(test::entityOf(Mesh::Sphere, {}, position, glm::vec3(scale)));
        render::Instance instance;
        const auto ranges = render::writeInstances(
            scene, {.depthRow = glm::row(view.projection, 3), .focalLength = std::abs(view.projection[1][1])},
            {&instance, 1});
        EXPECT_EQ(ranges[static_cast<std::size_t>(Mesh::Sphere)].nearCount, detailed)
            << position.x << ", " << position.z;
    }
}

} // namespace
} // namespace tarvik
