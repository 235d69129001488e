#pragma once

#include <tarvik/renderer/Export.hpp>

#include <string>
#include <vector>

namespace tarvik::rhi {

class TARVIK_RENDERER_API Instance final {
public:
    Instance() = delete;

    // The names of the instance extensions that the Vulkan loader and the installed drivers offer. Throws
    // UnsupportedHardwareError, saying what to install, when there is no loader or no driver.
    [[nodiscard]] static std::vector<std::string> availableExtensions();
};

} // namespace tarvik::rhi
