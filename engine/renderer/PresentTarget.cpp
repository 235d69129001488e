#include "PresentTargetImpl.hpp"

#include "Result.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <algorithm>
#include <chrono>

namespace tarvik::render {

namespace {

using Clock = std::chrono::steady_clock;

// Longer than a refresh of a slow display, short enough for the thread that also serves the user.
constexpr std::chrono::milliseconds kPatience{18};

std::chrono::nanoseconds until(Clock::time_point deadline) {
    return std::max<std::chrono::nanoseconds>(deadline - Clock::now(), std::chrono::nanoseconds::zero());
}

} // namespace

PresentTarget::Impl::Impl(const rhi::Device& device, VkSurfaceKHR surface, VkExtent2D extent,
                          rhi::PresentPolicy policy)
    : swapchain(std::make_unique<rhi::Swapchain::Impl>(device, surface)),
      device_(device),
      wanted_(extent),
      policy_(policy),
      frames_{Frame(device), Frame(device)} {
    remake();
    if (state_ == rhi::ImageOutcome::SurfaceLost)
        throw rhi::VulkanError("the window's surface is lost", VK_ERROR_SURFACE_LOST_KHR);
}

void PresentTarget::Impl::resize(VkExtent2D extent) {
    const bool same = extent.width == wanted_.width && extent.height == wanted_.height;
    if (same && state_ != rhi::ImageOutcome::OutOfDate)
        return;
    wanted_ = extent;
    state_ = rhi::ImageOutcome::OutOfDate;
    remake();
}

void PresentTarget::Impl::setPolicy(rhi::PresentPolicy policy) {
    if (policy != policy_)
        state_ = rhi::ImageOutcome::OutOfDate;
    policy_ = policy;
}

// An exception leaves the state OutOfDate, so that the next frame or resize tries again.
void PresentTarget::Impl::remake() {
    auto& chain = swapchain.impl();
    const rhi::ImageOutcome outcome = chain.remake(wanted_, policy_);
    if (outcome == rhi::ImageOutcome::Ready) {
        attachments_ = {};
        attachments_ = Attachments(device_, chain.extent(), chain.format());
        // Nothing is in flight now. A frame that was broken off may have left these signalled.
        for (Frame& frame : frames_) {
            frame.acquired = rhi::makeSemaphore(device_);
            frame.done = rhi::makeFence(device_, rhi::FenceState::Signalled);
        }
    }
    state_ = outcome;
}

rhi::ImageOutcome PresentTarget::Impl::begin(Frame& frame) {
    if (state_ != rhi::ImageOutcome::Ready && state_ != rhi::ImageOutcome::SurfaceLost)
        remake();
    if (state_ != rhi::ImageOutcome::Ready)
        return state_;

    const auto deadline = Clock::now() + kPatience;
    const VkFence done = frame.done.get();
    const auto earlier =
        rhi::imageOutcome(device_.vk.vkWaitForFences(device_.handle, 1, &done, VK_TRUE,
                                                     static_cast<std::uint64_t>(until(deadline).count())),
                          "waiting for an earlier frame");
    if (earlier != rhi::ImageOutcome::Ready)
        return earlier;
    return swapchain.impl().acquire(frame.acquired.get(), until(deadline));
}

FrameResult PresentTarget::Impl::draw(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                                      const RenderSettings& settings) {
    Frame& frame = frames_[frame_];
    const rhi::ImageOutcome begun = begin(frame);
    if (begun == rhi::ImageOutcome::NotReady)
        return rhi::frameResult(begun);
    // Until the frame is presented the swapchain counts as broken: an exception leaves an image acquired.
    state_ = rhi::ImageOutcome::OutOfDate;
    if (begun == rhi::ImageOutcome::OutOfDate || begun == rhi::ImageOutcome::SurfaceLost) {
        state_ = begun;
        return rhi::frameResult(begun);
    }

    record(frame, drawer, scene, view, settings);
    submit(frame);
    frame_ = (frame_ + 1) % kFramesInFlight;
    const rhi::ImageOutcome presented = swapchain.impl().present();
    const bool suboptimal =
        begun == rhi::ImageOutcome::Suboptimal || presented == rhi::ImageOutcome::Suboptimal;
    if (rhi::frameResult(presented) != FrameResult::Presented)
        state_ = presented;
    // A swapchain may stay suboptimal however often it is remade: only another size is worth it.
    else if (!suboptimal || swapchain.impl().fits(wanted_))
        state_ = rhi::ImageOutcome::Ready;
    return rhi::frameResult(presented);
}

void PresentTarget::Impl::record(Frame& frame, SceneDrawer& drawer, const Scene& scene,
                                 const CameraView& view, const RenderSettings& settings) {
    frame.stream.write(scene, view);
    const VkCommandBufferBeginInfo begin{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                         .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    rhi::check(device_.vk.vkBeginCommandBuffer(frame.commands.handle, &begin), "beginning to record");
    const auto& image = swapchain.impl().currentImage();
    drawer.record(frame.commands.handle, attachments_,
                  {image.image, image.view.get(), VK_IMAGE_LAYOUT_PRESENT_SRC_KHR}, frame.stream, settings);
    rhi::check(device_.vk.vkEndCommandBuffer(frame.commands.handle), "recording a frame");
}

void PresentTarget::Impl::submit(const Frame& frame) {
    const VkSemaphoreSubmitInfo wait{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
                                     .semaphore = frame.acquired.get(),
                                     .stageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT};
    const VkSemaphoreSubmitInfo signal{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
                                       .semaphore = swapchain.impl().currentImage().finished.get(),
                                       .stageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT};
    const VkCommandBufferSubmitInfo commands{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO,
                                             .commandBuffer = frame.commands.handle};
    const VkSubmitInfo2 info{.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
                             .waitSemaphoreInfoCount = 1,
                             .pWaitSemaphoreInfos = &wait,
                             .commandBufferInfoCount = 1,
                             .pCommandBufferInfos = &commands,
                             .signalSemaphoreInfoCount = 1,
                             .pSignalSemaphoreInfos = &signal};
    const VkFence done = frame.done.get();
    rhi::check(device_.vk.vkResetFences(device_.handle, 1, &done), "resetting a fence");
    rhi::check(device_.vk.vkQueueSubmit2(device_.queue, 1, &info, done), "submitting a frame");
}

PresentTarget::PresentTarget(RenderContext& context, VkSurfaceKHR surface, VkExtent2D extent,
                             rhi::PresentPolicy policy)
    : impl_(std::make_unique<Impl>(context.impl().device, surface, extent, policy)) {}

PresentTarget::~PresentTarget() = default;

void PresentTarget::resize(VkExtent2D extent) {
    impl_->resize(extent);
}

void PresentTarget::setPolicy(rhi::PresentPolicy policy) {
    impl_->setPolicy(policy);
}

const rhi::Swapchain& PresentTarget::swapchain() const {
    return impl_->swapchain;
}

} // namespace tarvik::render
