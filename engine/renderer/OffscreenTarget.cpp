#include "OffscreenTarget.hpp"

#include "Result.hpp"

#include <limits>

namespace tarvik::render {

namespace {

constexpr VkFormat kFormat = VK_FORMAT_R8G8B8A8_SRGB;
constexpr VkDeviceSize kPixelBytes = 4;

} // namespace

OffscreenTarget::OffscreenTarget(const rhi::Device& device, VkExtent2D extent)
    : device_(device),
      attachments_(device, extent, {kFormat, kSmooth}),
      image_(device, {.extent = extent,
                      .format = kFormat,
                      .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT}),
      readback_(device, kPixelBytes * extent.width * extent.height, rhi::BufferUse::Readback),
      stream_(device),
      commands_(device) {}

void OffscreenTarget::record(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                             const RenderSettings& settings) {
    const auto& vk = device_.vk;
    stream_.write(scene, view, settings);
    commands_.begin(device_);
    drawer.record(commands_.handle, attachments_,
                  {image_.get(), image_.view(), VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL}, stream_, settings);
    const VkBufferImageCopy region{
        .imageSubresource = {.aspectMask = VK_IMAGE_ASPECT_COLOR_BIT, .layerCount = 1},
        .imageExtent = {attachments_.extent.width, attachments_.extent.height, 1}};
    vk.vkCmdCopyImageToBuffer(commands_.handle, image_.get(), VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL,
                              readback_.get(), 1, &region);
    const VkMemoryBarrier2 visible{.sType = VK_STRUCTURE_TYPE_MEMORY_BARRIER_2,
                                   .srcStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
                                   .srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT,
                                   .dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT,
                                   .dstAccessMask = VK_ACCESS_2_HOST_READ_BIT};
    const VkDependencyInfo dependency{
        .sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO, .memoryBarrierCount = 1, .pMemoryBarriers = &visible};
    vk.vkCmdPipelineBarrier2(commands_.handle, &dependency);
    rhi::check(vk.vkEndCommandBuffer(commands_.handle), "recording a capture");
}

void OffscreenTarget::submit() {
    const auto fence = rhi::makeFence(device_);
    const VkCommandBufferSubmitInfo commands{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO,
                                             .commandBuffer = commands_.handle};
    const VkSubmitInfo2 submit{.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
                               .commandBufferInfoCount = 1,
                               .pCommandBufferInfos = &commands};
    rhi::check(device_.vk.vkQueueSubmit2(device_.queue, 1, &submit, fence.get()), "submitting a capture");
    const VkFence handle = fence.get();
    const VkResult result = device_.vk.vkWaitForFences(device_.handle, 1, &handle, VK_TRUE,
                                                       std::numeric_limits<std::uint64_t>::max());
    // Out of memory, say. The GPU is still drawing with what goes when this throws.
    if (result != VK_SUCCESS && result != VK_ERROR_DEVICE_LOST)
        device_.vk.vkQueueWaitIdle(device_.queue);
    rhi::check(result, "waiting for a capture");
}

std::span<const std::byte> OffscreenTarget::pixels() const {
    return {readback_.data(), readback_.size()};
}

} // namespace tarvik::render
