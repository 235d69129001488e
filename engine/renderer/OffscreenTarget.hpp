#pragma once

#include "SceneDrawer.hpp"

#include <cstddef>
#include <span>

namespace tarvik::render {

// Draws to an image that the CPU can read, apart from every surface.
class OffscreenTarget final {
public:
    OffscreenTarget(const rhi::Device& device, VkExtent2D extent);

    // All that the CPU does for a frame. Not to be called while the GPU is still drawing.
    void record(SceneDrawer& drawer, const Scene& scene, const CameraView& view,
                const RenderSettings& settings);
    // Returns when the picture is there.
    void submit();
    // RGBA, 8-bit sRGB, rows tightly packed.
    [[nodiscard]] std::span<const std::byte> pixels() const;

private:
    const rhi::Device& device_;
    Attachments attachments_;
    rhi::Image image_;
    rhi::Buffer readback_;
    FrameStream stream_;
    rhi::CommandBuffer commands_;
};

} // namespace tarvik::render
