#pragma once

#include <volk.h>

#include <span>
#include <string>

namespace tarvik::rhi {

enum class Validation : bool { Off, On };

// Loads the Vulkan loader, once. Throws UnsupportedHardwareError when there is none.
void loadVulkan();

// Owns a VkInstance and, with validation, the messenger that turns its messages into log lines.
class InstanceHandle final {
public:
    InstanceHandle(std::span<const std::string> extensions, Validation validation);
    InstanceHandle(const InstanceHandle&) = delete;
    InstanceHandle& operator=(const InstanceHandle&) = delete;
    ~InstanceHandle();

    [[nodiscard]] VkInstance get() const { return instance_; }

    // Functions of extensions. volk's own are those of the instance that was loaded last, and null where that
    // one lacks the extension.
    struct SurfaceFunctions {
        PFN_vkGetPhysicalDeviceSurfaceSupportKHR support = nullptr;
        PFN_vkGetPhysicalDeviceSurfaceCapabilitiesKHR capabilities = nullptr;
        PFN_vkGetPhysicalDeviceSurfaceFormatsKHR formats = nullptr;
        PFN_vkGetPhysicalDeviceSurfacePresentModesKHR presentModes = nullptr;
    };
    [[nodiscard]] const SurfaceFunctions& surface() const { return surface_; }
    [[nodiscard]] bool hasSurfaces() const { return surface_.support != nullptr; }
    [[nodiscard]] bool hasWayland() const { return hasWayland_; }

private:
    InstanceHandle() = default;

    template <typename Function>
    [[nodiscard]] Function load(const char* name) const;

    VkInstance instance_ = VK_NULL_HANDLE;
    VkDebugUtilsMessengerEXT messenger_ = VK_NULL_HANDLE;
    SurfaceFunctions surface_;
    bool hasWayland_ = false;
};

} // namespace tarvik::rhi
