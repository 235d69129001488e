#include <tarvik/renderer/Renderer.hpp>

#include "ContextImpl.hpp"
#include "OffscreenTarget.hpp"
#include "PresentTargetImpl.hpp"
#include "SceneDrawer.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <glm/mat4x4.hpp>

#include <algorithm>
#include <cstring>
#include <new>

namespace tarvik::render {

namespace {

// A capture is put together of tiles, so that its size costs memory for the picture alone.
constexpr std::uint32_t kTile = 2048;

// The part of the view that shows in the tile at (x, y).
CameraView cropped(CameraView view, VkExtent2D whole, VkExtent2D tile, std::uint32_t x, std::uint32_t y) {
    const auto scaleAndShift = [](std::uint32_t total, std::uint32_t part, std::uint32_t start) {
        const auto ratio = static_cast<float>(total) / static_cast<float>(part);
        const auto centre =
            (2.0F * static_cast<float>(start) + static_cast<float>(part)) / static_cast<float>(total) - 1.0F;
        return std::pair(ratio, -centre * ratio);
    };
    const auto [scaleX, shiftX] = scaleAndShift(whole.width, tile.width, x);
    const auto [scaleY, shiftY] = scaleAndShift(whole.height, tile.height, y);
    glm::mat4 crop(1.0F);
    crop[0][0] = scaleX;
    crop[1][1] = scaleY;
    crop[3][0] = shiftX;
    crop[3][1] = shiftY;
    view.projection = crop * view.projection;
    return view;
}

} // namespace

struct Renderer::Impl final {
    explicit Impl(RenderContext::Impl& context) : device(context.device), drawer(device, context.shaders) {}

    CapturedImage capture(const Scene& scene, const CameraView& view, VkExtent2D extent,
                          const RenderSettings& settings) {
        CapturedImage image{extent.width, extent.height, {}};
        image.pixels.resize(std::size_t{4} * extent.width * extent.height);
        const VkExtent2D tile{std::min(extent.width, kTile), std::min(extent.height, kTile)};
        OffscreenTarget target(device, tile);
        for (std::uint32_t y = 0; y < extent.height; y += tile.height) {
            for (std::uint32_t x = 0; x < extent.width; x += tile.width) {
                target.record(drawer, scene, cropped(view, extent, tile, x, y), settings);
                target.submit();
                copyTile(target.pixels(), tile, x, y, image);
            }
        }
        return image;
    }

    static void copyTile(std::span<const std::byte> pixels, VkExtent2D tile, std::uint32_t x, std::uint32_t y,
                         CapturedImage& image) {
        const std::uint32_t rows = std::min(tile.height, image.height - y);
        const std::size_t bytes = std::size_t{4} * std::min(tile.width, image.width - x);
        for (std::uint32_t row = 0; row < rows; ++row)
            std::memcpy(image.pixels.data() + std::size_t{4} * ((std::size_t{y} + row) * image.width + x),
                        pixels.data() + std::size_t{4} * row * tile.width, bytes);
    }

    const rhi::Device& device;
    SceneDrawer drawer;
};

Renderer::Renderer(RenderContext& context) : impl_(std::make_unique<Impl>(context.impl())) {}

Renderer::~Renderer() {
    // Whatever a lost device says: what was built on it is destroyed.
    impl_->device.vk.vkDeviceWaitIdle(impl_->device.handle);
}

FrameResult Renderer::render(PresentTarget& target, const Scene& scene, const CameraView& view,
                             const RenderSettings& settings) {
    return target.impl().draw(impl_->drawer, scene, view, settings);
}

std::expected<CapturedImage, Error> Renderer::capture(const Scene& scene, const CameraView& view,
                                                      VkExtent2D extent, const RenderSettings& settings) {
    const std::uint32_t limit = impl_->device.properties.limits.maxImageDimension2D;
    if (extent.width == 0 || extent.height == 0 || extent.width > limit || extent.height > limit)
        return makeError("cannot capture a picture of {} x {}: each side must be from 1 to {} pixels on {}",
                         extent.width, extent.height, limit, impl_->device.name);
    try {
        return impl_->capture(scene, view, extent, settings);
    } catch (const std::bad_alloc&) {
        return makeError("cannot capture a picture of {} x {}: out of memory", extent.width, extent.height);
    } catch (const rhi::VulkanError& error) {
        if (!rhi::isOutOfMemory(error.result()))
            throw;
        return makeError("cannot capture a picture of {} x {}: {}", extent.width, extent.height,
                         error.what());
    }
}

void Renderer::waitIdle() {
    rhi::check(impl_->device.vk.vkDeviceWaitIdle(impl_->device.handle), "waiting for the GPU");
}

} // namespace tarvik::render
