#include "Platform.hpp"

#include <cstdlib>

namespace tarvik::rhi {

std::string loaderAdvice() {
    return "Install the package libvulkan1 (Debian, Ubuntu), vulkan-loader (Fedora) or vulkan-icd-loader "
           "(Arch), "
           "then start again.";
}

std::string driverAdvice() {
    return "Install the Vulkan driver of your graphics card; the package mesa-vulkan-drivers (Debian, "
           "Ubuntu, "
           "Fedora) has those for AMD, Intel and none at all (llvmpipe). If VK_DRIVER_FILES or "
           "VK_ICD_FILENAMES "
           "is set, make sure that it names an installed driver.";
}

std::string validationAdvice() {
    return "install the package vulkan-validationlayers (Debian, Ubuntu, Fedora: vulkan-validation-layers)";
}

std::filesystem::path userCacheDirectory() {
    // XDG: a relative path is to be ignored.
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && cache[0] == '/')
        return std::filesystem::path(cache) / "tarvik";
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/')
        return std::filesystem::path(home) / ".cache" / "tarvik";
    return {};
}

} // namespace tarvik::rhi
