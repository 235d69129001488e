#pragma once

#include <tarvik/renderer/Export.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace tarvik::rhi {

// A physical device, by the index that RenderContextConfig::preferredDevice takes.
struct Gpu {
    std::uint32_t index = 0;
    std::string name;
    std::string kind; // "discrete", "integrated", "virtual", "software" or "other"
};

class TARVIK_RENDERER_API Instance final {
public:
    Instance() = delete;

    // The names of the instance extensions that the Vulkan loader and the installed drivers offer. Throws
    // UnsupportedHardwareError, saying what to install, when there is no loader or no driver.
    [[nodiscard]] static std::vector<std::string> availableExtensions();

    // In Vulkan's order, those that lack something included. Throws like availableExtensions().
    [[nodiscard]] static std::vector<Gpu> availableGpus();
};

} // namespace tarvik::rhi
