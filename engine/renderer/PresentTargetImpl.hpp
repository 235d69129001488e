#pragma once

#include "ContextImpl.hpp"
#include "SceneDrawer.hpp"
#include "SwapchainImpl.hpp"

#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/Renderer.hpp>

#include <array>
#include <cstddef>

namespace tarvik::render {

inline constexpr std::size_t kFramesInFlight = 2;

struct PresentTarget::Impl final {
    Impl(const rhi::Device& device, VkSurfaceKHR surface, VkExtent2D extent, rhi::PresentPolicy policy);

    void resize(VkExtent2D extent);
    void setPolicy(rhi::PresentPolicy policy);
    FrameResult draw(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                     const RenderSettings& settings);

    rhi::Swapchain swapchain;

private:
    // What one frame in flight holds until the GPU is done with it.
    struct Frame {
        explicit Frame(const rhi::Device& device) : commands(device), stream(device) {}
        rhi::CommandBuffer commands;
        FrameStream stream;
        rhi::UniqueSemaphore acquired;
        rhi::UniqueFence done;
    };

    void remake();
    [[nodiscard]] rhi::ImageOutcome begin(Frame& frame);
    void record(Frame& frame, SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                const RenderSettings& settings);
    void submit(const Frame& frame);

    const rhi::Device& device_;
    VkExtent2D wanted_;
    rhi::PresentPolicy policy_;
    rhi::ImageOutcome state_ = rhi::ImageOutcome::OutOfDate; // of the swapchain: Ready, or why it is not
    Attachments attachments_;
    std::array<Frame, kFramesInFlight> frames_;
    std::size_t frame_ = 0;
};

} // namespace tarvik::render
