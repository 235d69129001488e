#pragma once

#include "FrameStream.hpp"
#include "Geometry.hpp"
#include "Memory.hpp"
#include "Pipelines.hpp"

#include <tarvik/renderer/Renderer.hpp>

namespace tarvik::render {

// Four samples a pixel for smooth edges: every GPU has them, and resolves them for next to nothing.
inline constexpr VkSampleCountFlagBits kSmooth = VK_SAMPLE_COUNT_4_BIT;

// What a frame is drawn with, beside its finished image.
struct Attachments final {
    Attachments() = default;
    Attachments(const rhi::Device& device, VkExtent2D size, PictureFormat pictureFormat);

    [[nodiscard]] bool resolved() const { return format.samples != VK_SAMPLE_COUNT_1_BIT; }

    VkExtent2D extent{};
    PictureFormat format;
    rhi::Image colour; // multisampled; none when the finished image is drawn to directly
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

    // The stream has been written for this frame. Allocates nothing once meshes, sky and grid have been
    // drawn to the format.
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
