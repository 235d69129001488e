#pragma once

#include "ContextImpl.hpp"
#include "SceneDrawer.hpp"
#include "SwapchainImpl.hpp"

#include <tarvik/renderer/Export.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/Renderer.hpp>

#include <array>
#include <chrono>
#include <cstddef>

namespace tarvik::render {

inline constexpr std::size_t kFramesInFlight = 2;

[[nodiscard]] TARVIK_RENDERER_API FrameResult frameResult(rhi::ImageOutcome outcome);

struct PresentTarget::Impl final {
    Impl(RenderContext::Impl& context, VkSurfaceKHR surface, VkExtent2D extent, rhi::PresentPolicy policy);
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl();

    void resize(VkExtent2D extent);
    void setPolicy(rhi::PresentPolicy policy);
    FrameResult draw(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                     const RenderSettings& settings);

    rhi::Swapchain swapchain;

private:
    using Clock = std::chrono::steady_clock;

    // What one frame in flight holds until the GPU is done with it.
    struct Frame {
        explicit Frame(const rhi::Device& device) : commands(device), stream(device) {}
        rhi::CommandBuffer commands;
        FrameStream stream;
        rhi::UniqueSemaphore acquired;
        rhi::UniqueFence done;
        bool inFlight = false;
    };

    [[nodiscard]] bool isOthersTurn() const;
    void endTurn();
    void remake();
    [[nodiscard]] bool wait(VkFence fence, Clock::time_point deadline);
    [[nodiscard]] bool waitFor(Frame& frame, Clock::time_point deadline);
    // Whether all that was submitted and presented is done with the swapchain.
    [[nodiscard]] bool drain(Clock::time_point deadline);
    [[nodiscard]] rhi::ImageOutcome acquire(Clock::time_point deadline);
    void record(Frame& frame, SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                const RenderSettings& settings);
    void submit(Frame& frame);
    [[nodiscard]] rhi::ImageOutcome present();
    rhi::ImageOutcome noted(rhi::ImageOutcome outcome);

    RenderContext::Impl& context_;
    const rhi::Device& device_;
    VkExtent2D wanted_;
    rhi::PresentPolicy policy_;
    Attachments attachments_;
    std::array<Frame, kFramesInFlight> frames_;
    std::size_t frame_ = 0;
    rhi::UniqueFence drained_;
    bool draining_ = false; // that fence is submitted
    bool stale_ = true;     // the swapchain must be remade before the next frame
    bool lost_ = false;     // the surface is
    bool drawn_ = false;    // the current frame is submitted, not yet presented
    bool compared_ = false; // the current frame has asked the surface for its size
};

} // namespace tarvik::render
