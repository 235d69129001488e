#include <tarvik/renderer/Errors.hpp>

namespace tarvik::rhi {

VulkanError::VulkanError(const std::string& message, VkResult result)
    : std::runtime_error(message),
      result_(result) {}
VulkanError::~VulkanError() = default;

UnsupportedHardwareError::UnsupportedHardwareError(const std::string& message)
    : std::runtime_error(message) {}
UnsupportedHardwareError::~UnsupportedHardwareError() = default;

DeviceLostError::DeviceLostError(const std::string& message) : std::runtime_error(message) {}
DeviceLostError::~DeviceLostError() = default;

} // namespace tarvik::rhi
