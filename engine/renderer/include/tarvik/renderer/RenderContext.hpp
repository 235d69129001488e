#pragma once

#include <tarvik/renderer/Export.hpp>

#include <vulkan/vulkan_core.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvik::render {

struct RenderContextConfig {
    bool enableValidation = false;
    std::vector<std::string> instanceExtensions;
    std::optional<std::uint32_t> preferredDevice; // index as Vulkan lists the GPUs; unset: the best kind
    bool pipelineCache = true;                    // keep compiled pipelines on disk between runs
    std::wstring pipelineCacheDirectory;          // empty: the user's cache folder
    std::wstring shaderDirectory;                 // empty: the shaders built into the library
};

// The Vulkan instance and device that everything drawn shares. All use is from one thread.
class TARVIK_RENDERER_API RenderContext final {
public:
    // Throws rhi::UnsupportedHardwareError, rhi::DeviceLostError or rhi::VulkanError. Validation that was
    // asked for and is not installed is a warning in the log.
    explicit RenderContext(const RenderContextConfig& config);
    RenderContext(const RenderContext&) = delete;
    RenderContext& operator=(const RenderContext&) = delete;
    // Everything built on the context must be gone; surfaces too.
    ~RenderContext();

    [[nodiscard]] VkInstance vkInstance() const;
    [[nodiscard]] const std::string& deviceName() const;

    struct Impl;
    [[nodiscard]] Impl& impl() { return *impl_; } // for the renderer library's own files

private:
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik::render
