#include "SceneDrawer.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarvik::render {

namespace {

constexpr VkImageSubresourceRange whole(VkImageAspectFlags aspect) {
    return {.aspectMask = aspect, .levelCount = 1, .layerCount = 1};
}

// What an image held before is not needed, but what the frame before did with it must be over.
VkImageMemoryBarrier2 beginning(VkImage image, VkImageAspectFlags aspect, VkPipelineStageFlags2 stages,
                                VkAccessFlags2 writes, VkAccessFlags2 accesses, VkImageLayout layout) {
    return {.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
            .srcStageMask = stages,
            .srcAccessMask = writes,
            .dstStageMask = stages,
            .dstAccessMask = accesses,
            .oldLayout = VK_IMAGE_LAYOUT_UNDEFINED,
            .newLayout = layout,
            .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
            .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
            .image = image,
            .subresourceRange = whole(aspect)};
}

void barrier(const rhi::Device& device, VkCommandBuffer commands,
             std::span<const VkImageMemoryBarrier2> images) {
    const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                .imageMemoryBarrierCount = static_cast<std::uint32_t>(images.size()),
                                .pImageMemoryBarriers = images.data()};
    device.vk.vkCmdPipelineBarrier2(commands, &info);
}

constexpr VkPipelineStageFlags2 kColourStage = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT;
constexpr VkAccessFlags2 kColourWrite = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT;
// The grid is blended.
constexpr VkAccessFlags2 kColourAccess = kColourWrite | VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT;
constexpr VkPipelineStageFlags2 kDepthStages =
    VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT | VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT;
constexpr VkAccessFlags2 kDepthWrite = VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT;

bool hasInstances(const InstanceRanges& ranges) {
    return std::ranges::any_of(
        ranges, [](const InstanceRange& range) { return range.nearCount != 0 || range.farCount != 0; });
}

} // namespace

Attachments::Attachments(const rhi::Device& device, VkExtent2D size, PictureFormat pictureFormat)
    : extent(size),
      format(pictureFormat),
      depth(device, {.extent = size,
                     .format = rhi::kDepthFormat,
                     .samples = format.samples,
                     .usage = VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT |
                              VK_IMAGE_USAGE_TRANSIENT_ATTACHMENT_BIT}) {
    if (resolved())
        colour = rhi::Image(
            device, {.extent = size,
                     .format = format.colour,
                     .samples = format.samples,
                     .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSIENT_ATTACHMENT_BIT});
}

SceneDrawer::SceneDrawer(const rhi::Device& device, const ShaderSource& shaders)
    : device_(device),
      pipelines_(device, shaders) {
    const Geometry geometry = makeGeometry();
    const std::size_t vertexBytes = geometry.vertices.size() * sizeof(Vertex);
    const std::size_t indexBytes = geometry.indices.size() * sizeof(std::uint16_t);
    meshes_ = geometry.meshes;
    indexOffset_ = vertexBytes;
    geometry_ = rhi::Buffer(device, vertexBytes + indexBytes, rhi::BufferUse::Upload);
    std::memcpy(geometry_.data(), geometry.vertices.data(), vertexBytes);
    std::memcpy(geometry_.data() + vertexBytes, geometry.indices.data(), indexBytes);
}

void SceneDrawer::record(VkCommandBuffer commands, const Attachments& attachments,
                         const FinishedImage& finished, const FrameStream& stream,
                         const RenderSettings& settings) {
    const auto& vk = device_.vk;
    const std::array beginnings{
        beginning(finished.image, VK_IMAGE_ASPECT_COLOR_BIT, kColourStage, 0, kColourAccess,
                  VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL),
        beginning(attachments.depth.get(), VK_IMAGE_ASPECT_DEPTH_BIT, kDepthStages, kDepthWrite,
                  kDepthWrite | VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT,
                  VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL),
        beginning(attachments.colour.get(), VK_IMAGE_ASPECT_COLOR_BIT, kColourStage, kColourWrite,
                  kColourAccess, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL)};
    const bool resolved = attachments.resolved();
    barrier(device_, commands, std::span(beginnings).first(resolved ? 3 : 2));

    // The sky covers what the scene does not, so the colour needs no clearing.
    VkRenderingAttachmentInfo colour{.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
                                     .imageView = finished.view,
                                     .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
                                     .loadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE,
                                     .storeOp = VK_ATTACHMENT_STORE_OP_STORE};
    if (resolved) {
        colour.imageView = attachments.colour.view();
        colour.resolveMode = VK_RESOLVE_MODE_AVERAGE_BIT;
        colour.resolveImageView = finished.view;
        colour.resolveImageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
        colour.storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    }
    const VkRenderingAttachmentInfo depth{.sType = VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO,
                                          .imageView = attachments.depth.view(),
                                          .imageLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL,
                                          .loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR,
                                          .storeOp = VK_ATTACHMENT_STORE_OP_DONT_CARE,
                                          .clearValue = {.depthStencil = {.depth = 0.0F}}};
    const VkRect2D area{.extent = attachments.extent};
    const VkRenderingInfo rendering{.sType = VK_STRUCTURE_TYPE_RENDERING_INFO,
                                    .renderArea = area,
                                    .layerCount = 1,
                                    .colorAttachmentCount = 1,
                                    .pColorAttachments = &colour,
                                    .pDepthAttachment = &depth};
    vk.vkCmdBeginRendering(commands, &rendering);
    const VkViewport viewport{.width = static_cast<float>(attachments.extent.width),
                              .height = static_cast<float>(attachments.extent.height),
                              .maxDepth = 1.0F};
    vk.vkCmdSetViewport(commands, 0, 1, &viewport);
    vk.vkCmdSetScissor(commands, 0, 1, &area);
    const VkDescriptorSet frame = stream.frameSet();
    vk.vkCmdBindDescriptorSets(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipelines_.layout(), 0, 1, &frame,
                               0, nullptr);

    const auto bind = [&](Pipelines::Kind kind) {
        vk.vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS,
                             pipelines_.get(attachments.format, kind));
    };
    if (hasInstances(stream.ranges())) {
        bind(Pipelines::Kind::Mesh);
        drawMeshes(commands, stream);
    }
    vk.vkCmdSetCullMode(commands, VK_CULL_MODE_NONE);
    bind(Pipelines::Kind::Sky);
    vk.vkCmdDraw(commands, 3, 1, 0, 0);
    if (settings.grid && !settings.finalPicture) {
        bind(Pipelines::Kind::Grid);
        vk.vkCmdDraw(commands, 4, 1, 0, 0);
    }
    vk.vkCmdEndRendering(commands);

    const bool copied = finished.layout == VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    const VkImageMemoryBarrier2 ending{.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
                                       .srcStageMask = kColourStage,
                                       .srcAccessMask = kColourWrite,
                                       .dstStageMask = copied ? VK_PIPELINE_STAGE_2_COPY_BIT : kColourStage,
                                       .dstAccessMask = copied ? VK_ACCESS_2_TRANSFER_READ_BIT : 0,
                                       .oldLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
                                       .newLayout = finished.layout,
                                       .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                       .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                       .image = finished.image,
                                       .subresourceRange = whole(VK_IMAGE_ASPECT_COLOR_BIT)};
    barrier(device_, commands, {&ending, 1});
}

void SceneDrawer::drawMeshes(VkCommandBuffer commands, const FrameStream& stream) const {
    const auto& vk = device_.vk;
    const std::array buffers{geometry_.get(), stream.buffer()};
    const std::array<VkDeviceSize, 2> offsets{0, FrameStream::instanceOffset()};
    vk.vkCmdBindVertexBuffers(commands, 0, static_cast<std::uint32_t>(buffers.size()), buffers.data(),
                              offsets.data());
    vk.vkCmdBindIndexBuffer(commands, geometry_.get(), indexOffset_, VK_INDEX_TYPE_UINT16);
    for (std::size_t i = 0; i < kMeshCount; ++i) {
        const InstanceRange& instances = stream.ranges()[i];
        // Only the plane has no inside.
        const bool flat = static_cast<Mesh>(i) == Mesh::Plane;
        vk.vkCmdSetCullMode(commands, flat ? VK_CULL_MODE_NONE : VK_CULL_MODE_BACK_BIT);
        draw(commands, meshes_[i].full, instances.first, instances.nearCount);
        draw(commands, meshes_[i].coarse, instances.first + instances.nearCount, instances.farCount);
    }
}

void SceneDrawer::draw(VkCommandBuffer commands, const MeshRange& mesh, std::uint32_t first,
                       std::uint32_t count) const {
    if (count != 0)
        device_.vk.vkCmdDrawIndexed(commands, mesh.indexCount, count, mesh.firstIndex, 0, first);
}

} // namespace tarvik::render
