#include "Result.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <fmt/format.h>

#include <string>

namespace tarvik::rhi {

namespace {

std::string describe(VkResult result) {
    switch (result) {
    case VK_TIMEOUT:
        return "not done in time (VK_TIMEOUT)";
    case VK_NOT_READY:
        return "not ready (VK_NOT_READY)";
    case VK_ERROR_OUT_OF_HOST_MEMORY:
        return "out of memory (VK_ERROR_OUT_OF_HOST_MEMORY)";
    case VK_ERROR_OUT_OF_DEVICE_MEMORY:
        return "out of graphics memory (VK_ERROR_OUT_OF_DEVICE_MEMORY)";
    case VK_ERROR_INITIALIZATION_FAILED:
        return "the driver could not initialise (VK_ERROR_INITIALIZATION_FAILED)";
    case VK_ERROR_DEVICE_LOST:
        return "the GPU device was lost (VK_ERROR_DEVICE_LOST)";
    case VK_ERROR_MEMORY_MAP_FAILED:
        return "memory could not be mapped (VK_ERROR_MEMORY_MAP_FAILED)";
    case VK_ERROR_LAYER_NOT_PRESENT:
        return "a layer is missing (VK_ERROR_LAYER_NOT_PRESENT)";
    case VK_ERROR_EXTENSION_NOT_PRESENT:
        return "an extension is missing (VK_ERROR_EXTENSION_NOT_PRESENT)";
    case VK_ERROR_FEATURE_NOT_PRESENT:
        return "a feature is missing (VK_ERROR_FEATURE_NOT_PRESENT)";
    case VK_ERROR_INCOMPATIBLE_DRIVER:
        return "no compatible driver (VK_ERROR_INCOMPATIBLE_DRIVER)";
    case VK_ERROR_TOO_MANY_OBJECTS:
        return "too many objects (VK_ERROR_TOO_MANY_OBJECTS)";
    case VK_ERROR_SURFACE_LOST_KHR:
        return "the window's surface was lost (VK_ERROR_SURFACE_LOST_KHR)";
    case VK_ERROR_NATIVE_WINDOW_IN_USE_KHR:
        return "the window is in use by another renderer (VK_ERROR_NATIVE_WINDOW_IN_USE_KHR)";
    case VK_ERROR_OUT_OF_DATE_KHR:
        return "the swapchain is out of date (VK_ERROR_OUT_OF_DATE_KHR)";
    case VK_ERROR_UNKNOWN:
        return "unknown driver error (VK_ERROR_UNKNOWN)";
    default:
        return fmt::format("VkResult {}", static_cast<int>(result));
    }
}

} // namespace

void check(VkResult result, std::string_view operation) {
    if (result == VK_SUCCESS)
        return;
    const std::string message = fmt::format("{} failed: {}", operation, describe(result));
    if (result == VK_ERROR_DEVICE_LOST)
        throw DeviceLostError(message);
    throw VulkanError(message, result);
}

ImageOutcome imageOutcome(VkResult result, std::string_view operation) {
    switch (result) {
    case VK_SUBOPTIMAL_KHR:
        return ImageOutcome::Suboptimal;
    case VK_TIMEOUT:
    case VK_NOT_READY:
        return ImageOutcome::NotReady;
    case VK_ERROR_OUT_OF_DATE_KHR:
    case VK_ERROR_FULL_SCREEN_EXCLUSIVE_MODE_LOST_EXT:
        return ImageOutcome::OutOfDate;
    case VK_ERROR_SURFACE_LOST_KHR:
        return ImageOutcome::SurfaceLost;
    default:
        check(result, operation);
        return ImageOutcome::Ready;
    }
}

bool isOutOfMemory(VkResult result) {
    return result == VK_ERROR_OUT_OF_HOST_MEMORY || result == VK_ERROR_OUT_OF_DEVICE_MEMORY ||
           result == VK_ERROR_MEMORY_MAP_FAILED;
}

} // namespace tarvik::rhi
