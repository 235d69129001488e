#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/renderer/Export.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Scene.hpp>

#include <vulkan/vulkan_core.h>

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace tarvik::render {

enum class FrameResult : std::uint8_t {
    Presented = 0,   // reached the screen
    Skipped = 1,     // no image was ready in time, or the surface has no size just now: try again
    SurfaceLost = 2, // the target must be made anew
};

struct RenderSettings {
    // The final picture: no editor overlays, whatever else is set.
    bool finalPicture = false;
    // The fading ground grid, an editor overlay.
    bool grid = true;
    // This entity is drawn tinted, an editor overlay.
    std::optional<std::size_t> selected = std::nullopt;
};

struct CapturedImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels; // 8-bit sRGB with alpha, RGBA, rows tightly packed, top row first
};

// Draws scenes, to targets and to images. Any operation may throw rhi::DeviceLostError or rhi::VulkanError.
class TARVIK_RENDERER_API Renderer final {
public:
    explicit Renderer(RenderContext& context);
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;
    ~Renderer();

    // Records, submits and presents one frame. Waits 18 ms at most for an image to draw to; what the driver
    // takes to present it is its own affair.
    FrameResult render(PresentTarget& target, const Scene& scene, const CameraView& view,
                       const RenderSettings& settings);

    // Draws at any size up to the device's limit, in device pixels, and waits for the picture. An extent of
    // zero or beyond the limit is an Error.
    std::expected<CapturedImage, Error> capture(const Scene& scene, const CameraView& view, VkExtent2D extent,
                                                const RenderSettings& settings);

    // Returns when the device has nothing left to do.
    void waitIdle();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik::render
