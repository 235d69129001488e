#include "Gpu.hpp"

#include "Platform.hpp"
#include "Result.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <volk.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace tarvik::rhi {

namespace {

bool hasSwapchain(VkPhysicalDevice gpu) {
    std::uint32_t count = 0;
    check(vkEnumerateDeviceExtensionProperties(gpu, nullptr, &count, nullptr),
          "listing the GPU's extensions");
    std::vector<VkExtensionProperties> extensions(count);
    vkEnumerateDeviceExtensionProperties(gpu, nullptr, &count, extensions.data());
    extensions.resize(count);
    return std::ranges::any_of(extensions, [](const auto& extension) {
        return std::strcmp(extension.extensionName, VK_KHR_SWAPCHAIN_EXTENSION_NAME) == 0;
    });
}

bool hasDepthFormat(VkPhysicalDevice gpu) {
    VkFormatProperties properties;
    vkGetPhysicalDeviceFormatProperties(gpu, kDepthFormat, &properties);
    return (properties.optimalTilingFeatures & VK_FORMAT_FEATURE_DEPTH_STENCIL_ATTACHMENT_BIT) != 0;
}

std::optional<std::uint32_t> graphicsFamily(VkPhysicalDevice gpu) {
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(gpu, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(gpu, &count, families.data());
    const auto found = std::ranges::find_if(
        families, [](const auto& family) { return (family.queueFlags & VK_QUEUE_GRAPHICS_BIT) != 0; });
    if (found == families.end())
        return std::nullopt;
    return static_cast<std::uint32_t>(found - families.begin());
}

std::string missingFeatures(VkPhysicalDevice gpu, const VkPhysicalDeviceProperties& properties) {
    if (properties.apiVersion < VK_API_VERSION_1_3)
        return fmt::format("Vulkan 1.3 (it has {}.{})", VK_API_VERSION_MAJOR(properties.apiVersion),
                           VK_API_VERSION_MINOR(properties.apiVersion));
    VkPhysicalDeviceVulkan13Features features13{.sType =
                                                    VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES};
    VkPhysicalDeviceFeatures2 features{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2,
                                       .pNext = &features13};
    vkGetPhysicalDeviceFeatures2(gpu, &features);

    std::vector<std::string_view> missing;
    if (features13.dynamicRendering == VK_FALSE)
        missing.emplace_back("dynamicRendering");
    if (features13.synchronization2 == VK_FALSE)
        missing.emplace_back("synchronization2");
    if (!hasDepthFormat(gpu))
        missing.emplace_back("D32_SFLOAT depth images");
    if (!hasSwapchain(gpu))
        missing.emplace_back(VK_KHR_SWAPCHAIN_EXTENSION_NAME);
    return fmt::format("{}", fmt::join(missing, ", "));
}

std::string list(std::span<const GpuCandidate> gpus) {
    std::string text;
    for (const GpuCandidate& gpu : gpus) {
        fmt::format_to(std::back_inserter(text), "\n  {}: {} ({})", gpu.index, gpu.name, kindName(gpu.type));
        if (!gpu.missing.empty())
            fmt::format_to(std::back_inserter(text), ", lacks {}", gpu.missing);
    }
    return text;
}

int rank(VkPhysicalDeviceType type) {
    switch (type) {
    case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
        return 4;
    case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
        return 3;
    case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
        return 2;
    case VK_PHYSICAL_DEVICE_TYPE_CPU:
        return 1;
    default:
        return 0;
    }
}

} // namespace

std::string_view kindName(VkPhysicalDeviceType type) {
    switch (type) {
    case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
        return "discrete";
    case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
        return "integrated";
    case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
        return "virtual";
    case VK_PHYSICAL_DEVICE_TYPE_CPU:
        return "software";
    default:
        return "other";
    }
}

std::vector<GpuCandidate> findGpus(VkInstance instance) {
    std::uint32_t count = 0;
    std::vector<VkPhysicalDevice> handles;
    VkResult result = VK_INCOMPLETE;
    while (result == VK_INCOMPLETE) {
        result = vkEnumeratePhysicalDevices(instance, &count, nullptr);
        handles.resize(count);
        if (result == VK_SUCCESS)
            result = vkEnumeratePhysicalDevices(instance, &count, handles.data());
    }
    // The loader's answer when every driver finds nothing to drive.
    if (result == VK_ERROR_INITIALIZATION_FAILED)
        count = 0;
    else
        check(result, "listing the GPUs");
    handles.resize(count);
    if (handles.empty())
        throw UnsupportedHardwareError("the installed Vulkan drivers find no GPU. " + driverAdvice());

    std::vector<GpuCandidate> gpus;
    for (VkPhysicalDevice handle : handles) {
        VkPhysicalDeviceProperties properties;
        vkGetPhysicalDeviceProperties(handle, &properties);
        const auto family = graphicsFamily(handle);
        gpus.push_back({.index = static_cast<std::uint32_t>(gpus.size()),
                        .name = properties.deviceName,
                        .type = properties.deviceType,
                        .missing = family ? missingFeatures(handle, properties) : "a graphics queue",
                        .handle = handle,
                        .queueFamily = family.value_or(0)});
    }
    return gpus;
}

const GpuCandidate& chooseGpu(std::span<const GpuCandidate> gpus, std::optional<std::uint32_t> preferred) {
    if (preferred) {
        if (*preferred >= gpus.size())
            throw UnsupportedHardwareError(
                fmt::format("there is no GPU with index {}. Choose another with --gpu; this machine has:{}",
                            *preferred, list(gpus)));
        const GpuCandidate& gpu = gpus[*preferred];
        if (!gpu.missing.empty())
            throw UnsupportedHardwareError(fmt::format("GPU {}, {}, lacks {}. Update its driver, or choose "
                                                       "another with --gpu; this machine has:{}",
                                                       gpu.index, gpu.name, gpu.missing, list(gpus)));
        return gpu;
    }
    const GpuCandidate* best = nullptr;
    for (const GpuCandidate& gpu : gpus) {
        if (gpu.missing.empty() && (best == nullptr || rank(gpu.type) > rank(best->type)))
            best = &gpu;
    }
    if (best == nullptr)
        throw UnsupportedHardwareError(
            fmt::format("no GPU of this machine can be used. Update the graphics driver; this machine has:{}",
                        list(gpus)));
    return *best;
}

} // namespace tarvik::rhi
