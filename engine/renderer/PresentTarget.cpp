#include "PresentTargetImpl.hpp"

#include "Result.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tarvik::render {

namespace {

// About a refresh of a usual display, short enough for the thread that also serves the user.
constexpr std::chrono::milliseconds kPatience{18};

// Others stop waiting for a target that was not drawn to for so long: its program has something else to do.
constexpr std::chrono::milliseconds kTurn{250};

std::chrono::nanoseconds until(std::chrono::steady_clock::time_point deadline) {
    return std::max<std::chrono::nanoseconds>(deadline - std::chrono::steady_clock::now(),
                                              std::chrono::nanoseconds::zero());
}

bool isSoftware(const rhi::Device& device) {
    return device.properties.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU;
}

} // namespace

FrameResult frameResult(rhi::ImageOutcome outcome) {
    switch (outcome) {
    case rhi::ImageOutcome::Ready:
    case rhi::ImageOutcome::Suboptimal:
        return FrameResult::Presented;
    case rhi::ImageOutcome::SurfaceLost:
        return FrameResult::SurfaceLost;
    case rhi::ImageOutcome::NotReady:
    case rhi::ImageOutcome::OutOfDate:
        break;
    }
    return FrameResult::Skipped;
}

PresentTarget::Impl::Impl(RenderContext::Impl& context, VkSurfaceKHR surface, VkExtent2D extent,
                          rhi::PresentPolicy policy)
    : swapchain(std::make_unique<rhi::Swapchain::Impl>(context.device, surface)),
      context_(context),
      device_(context.device),
      wanted_(extent),
      policy_(policy),
      frames_{Frame(device_), Frame(device_)},
      drained_(rhi::makeFence(device_)) {
    remake();
    if (lost_)
        throw rhi::VulkanError("the window's surface is lost", VK_ERROR_SURFACE_LOST_KHR);
}

PresentTarget::Impl::~Impl() {
    endTurn();
    device_.vk.vkQueueWaitIdle(device_.queue); // returns at once when the device is lost
}

void PresentTarget::Impl::resize(VkExtent2D extent) {
    if (extent.width != wanted_.width || extent.height != wanted_.height)
        stale_ = true;
    wanted_ = extent;
}

void PresentTarget::Impl::setPolicy(rhi::PresentPolicy policy) {
    if (policy != policy_)
        stale_ = true;
    policy_ = policy;
}

FrameResult PresentTarget::Impl::draw(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                                      const RenderSettings& settings) {
    try {
        const auto deadline = Clock::now() + kPatience;
        Frame& frame = frames_[frame_];
        if (!drawn_) {
            const FrameResult acquired = frameResult(acquire(deadline));
            if (acquired != FrameResult::Presented)
                return acquired;
            record(frame, drawer, scene, view, settings);
            submit(frame);
            drawn_ = true;
        }
        // Software drivers hold whoever presents until the picture is drawn, which may take long.
        if (isSoftware(device_)) {
            context_.turn = {this, Clock::now()};
            if (!waitFor(frame, deadline))
                return FrameResult::Skipped;
        }
        return frameResult(present());
    } catch (...) {
        // An image may have been acquired that will never be presented.
        stale_ = true;
        drawn_ = false;
        endTurn();
        throw;
    }
}

bool PresentTarget::Impl::isOthersTurn() const {
    const auto& [target, since] = context_.turn;
    return target != nullptr && target != this && Clock::now() - since < kTurn;
}

void PresentTarget::Impl::endTurn() {
    if (context_.turn.target == this)
        context_.turn = {};
}

void PresentTarget::Impl::remake() {
    auto& chain = swapchain.impl();
    const rhi::ImageOutcome outcome = noted(chain.remake(wanted_, policy_));
    if (outcome != rhi::ImageOutcome::Ready)
        return;
    attachments_ = {};
    // On a software driver four samples cost three times the frame; there pictures alone are smooth.
    const auto samples = isSoftware(device_) ? VK_SAMPLE_COUNT_1_BIT : kSmooth;
    attachments_ = Attachments(device_, chain.extent(), {chain.format(), samples});
    // A frame that was broken off may have left its semaphore signalled.
    for (Frame& frame : frames_) {
        frame.acquired = rhi::makeSemaphore(device_);
        frame.done = rhi::makeFence(device_);
        frame.inFlight = false;
    }
    stale_ = false;
}

bool PresentTarget::Impl::wait(VkFence fence, Clock::time_point deadline) {
    const auto timeout = static_cast<std::uint64_t>(until(deadline).count());
    return rhi::imageOutcome(device_.vk.vkWaitForFences(device_.handle, 1, &fence, VK_TRUE, timeout),
                             "waiting for a frame") == rhi::ImageOutcome::Ready;
}

bool PresentTarget::Impl::waitFor(Frame& frame, Clock::time_point deadline) {
    frame.inFlight = frame.inFlight && !wait(frame.done.get(), deadline);
    return !frame.inFlight;
}

bool PresentTarget::Impl::drain(Clock::time_point deadline) {
    const VkFence drained = drained_.get();
    if (swapchain.impl().exists() && !draining_) {
        rhi::check(device_.vk.vkResetFences(device_.handle, 1, &drained), "resetting a fence");
        rhi::check(device_.vk.vkQueueSubmit2(device_.queue, 0, nullptr, drained), "submitting a fence");
        draining_ = true;
    }
    draining_ = draining_ && !wait(drained, deadline);
    return !draining_;
}

rhi::ImageOutcome PresentTarget::Impl::acquire(Clock::time_point deadline) {
    if (lost_)
        return rhi::ImageOutcome::SurfaceLost;
    if (isOthersTurn())
        return rhi::ImageOutcome::NotReady;
    if (stale_) {
        if (!drain(deadline))
            return rhi::ImageOutcome::NotReady;
        remake();
        if (lost_)
            return rhi::ImageOutcome::SurfaceLost;
        if (stale_)
            return rhi::ImageOutcome::NotReady;
    }
    Frame& frame = frames_[frame_];
    if (!waitFor(frame, deadline))
        return rhi::ImageOutcome::NotReady;
    compared_ = false;
    return noted(swapchain.impl().acquire(frame.acquired.get(), until(deadline)));
}

rhi::ImageOutcome PresentTarget::Impl::present() {
    drawn_ = false;
    endTurn();
    frame_ = (frame_ + 1) % kFramesInFlight;
    return noted(swapchain.impl().present());
}

rhi::ImageOutcome PresentTarget::Impl::noted(rhi::ImageOutcome outcome) {
    if (outcome == rhi::ImageOutcome::OutOfDate)
        stale_ = true;
    // A swapchain may stay suboptimal however often it is remade: only another size is worth it.
    if (outcome == rhi::ImageOutcome::Suboptimal && !std::exchange(compared_, true) &&
        !swapchain.impl().fits(wanted_))
        stale_ = true;
    if (outcome == rhi::ImageOutcome::SurfaceLost)
        lost_ = true;
    return outcome;
}

void PresentTarget::Impl::record(Frame& frame, SceneDrawer& drawer, const Scene& scene,
                                 const CameraView& view, const RenderSettings& settings) {
    frame.stream.write(scene, view, settings);
    frame.commands.begin(device_);
    const auto& image = swapchain.impl().currentImage();
    drawer.record(frame.commands.handle, attachments_,
                  {image.image, image.view.get(), VK_IMAGE_LAYOUT_PRESENT_SRC_KHR}, frame.stream, settings);
    rhi::check(device_.vk.vkEndCommandBuffer(frame.commands.handle), "recording a frame");
}

void PresentTarget::Impl::submit(Frame& frame) {
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
    frame.inFlight = true;
}

PresentTarget::PresentTarget(RenderContext& context, VkSurfaceKHR surface, VkExtent2D extent,
                             rhi::PresentPolicy policy)
    : impl_(std::make_unique<Impl>(context.impl(), surface, extent, policy)) {}

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
