#pragma once

#include <tarvik/renderer/Export.hpp>

#include <vulkan/vulkan_core.h>

#include <stdexcept>
#include <string>

namespace tarvik::rhi {

class TARVIK_RENDERER_API VulkanError final : public std::runtime_error {
public:
    VulkanError(const std::string& message, VkResult result);
    ~VulkanError() override;
    [[nodiscard]] VkResult result() const noexcept { return result_; }

private:
    VkResult result_;
};

// The machine cannot do what is needed, whatever is tried: the message says what is missing.
class TARVIK_RENDERER_API UnsupportedHardwareError final : public std::runtime_error {
public:
    explicit UnsupportedHardwareError(const std::string& message);
    ~UnsupportedHardwareError() override;
};

// The device is gone for good (driver reset, hang, unplugged). Only destroying the objects built on it is
// still possible.
class TARVIK_RENDERER_API DeviceLostError final : public std::runtime_error {
public:
    explicit DeviceLostError(const std::string& message);
    ~DeviceLostError() override;
};

} // namespace tarvik::rhi
