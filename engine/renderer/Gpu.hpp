#pragma once

#include <tarvik/renderer/Export.hpp>

#include <vulkan/vulkan_core.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::rhi {

// The only depth format that is precise when reversed.
inline constexpr VkFormat kDepthFormat = VK_FORMAT_D32_SFLOAT;

struct GpuCandidate {
    std::uint32_t index = 0;
    std::string name;
    VkPhysicalDeviceType type = VK_PHYSICAL_DEVICE_TYPE_OTHER;
    std::string missing; // what the renderer needs and the GPU lacks; empty: it can be used
    VkPhysicalDevice handle = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0;
};

[[nodiscard]] std::string_view kindName(VkPhysicalDeviceType type);

// Throws UnsupportedHardwareError when the drivers find no GPU.
[[nodiscard]] std::vector<GpuCandidate> findGpus(VkInstance instance);

// The preferred one, else the best kind. Throws UnsupportedHardwareError, listing the GPUs, when that one
// does not exist or none can be used.
[[nodiscard]] TARVIK_RENDERER_API const GpuCandidate& chooseGpu(std::span<const GpuCandidate> gpus,
                                                                std::optional<std::uint32_t> preferred);

} // namespace tarvik::rhi
