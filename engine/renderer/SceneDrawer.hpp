#pragma once

#include "FrameStream.hpp"
#include "Geometry.hpp"
#include "Memory.hpp"
#include "Pipelines.hpp"

#include <tarvik/renderer/Renderer.hpp>

namespace tarvik::render {

// The multisampled images that a frame is drawn into, before it is resolved.
struct Attachments final {
    Attachments() = default;
    Attachments(const rhi::Device& device, VkExtent2D size, VkFormat colourFormat);

    VkExtent2D extent{};
    VkFormat format = VK_FORMAT_UNDEFINED;
    rhi::Image colour;
    rhi::Image depth;
};

// The single-sampled image that holds the finished frame.
struct FinishedImage {
    VkImage image = VK_NULL_HANDLE;
    VkImageView view = VK_NULL_HANDLE;
    VkImageLayout layout = VK_IMAGE_LAYOUT_UNDEFINED; // in which it is left
};

// Records the commands that draw a scene.
class SceneDrawer final {
public:
    SceneDrawer(const rhi::Device& device, const ShaderSource& shaders);

    // The stream has been written for this frame. Allocates nothing once the format has been drawn to.
    void record(VkCommandBuffer commands, const Attachments& attachments, const FinishedImage& finished,
                const FrameStream& stream, const RenderSettings& settings);

private:
    void drawMeshes(VkCommandBuffer commands, const FrameStream& stream) const;
    void draw(VkCommandBuffer commands, const MeshRange& mesh, std::uint32_t first,
              std::uint32_t count) const;

    const rhi::Device& device_;
    Pipelines pipelines_;
    rhi::Buffer geometry_;
    VkDeviceSize indexOffset_ = 0;
    std::array<MeshDetails, kMeshCount> meshes_;
};

} // namespace tarvik::render
