#pragma once

#include <tarvik/renderer/Export.hpp>

#include <vulkan/vulkan_core.h>

#include <cstdint>
#include <string_view>

// What a VkResult comes to, for all who have nothing better to do about it.
namespace tarvik::rhi {

// What became of an image of a surface: when it was acquired, presented, or its size asked for.
enum class ImageOutcome : std::uint8_t {
    Ready,
    Suboptimal, // usable, but the swapchain no longer matches the surface
    NotReady,   // not in time, or the surface has no size
    OutOfDate,  // the swapchain must be remade
    SurfaceLost,
};

// Throws DeviceLostError or VulkanError unless the operation succeeded. The operation is worded to follow
// "failed: ", as in "creating the device".
TARVIK_RENDERER_API void check(VkResult result, std::string_view operation);

// Throws what check() throws for a result that says nothing about the surface.
[[nodiscard]] TARVIK_RENDERER_API ImageOutcome imageOutcome(VkResult result, std::string_view operation);

[[nodiscard]] TARVIK_RENDERER_API bool isOutOfMemory(VkResult result);

} // namespace tarvik::rhi
