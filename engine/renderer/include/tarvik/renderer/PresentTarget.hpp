#pragma once

#include <tarvik/renderer/Export.hpp>
#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/renderer/Swapchain.hpp>

#include <vulkan/vulkan_core.h>

#include <memory>

namespace tarvik::render {

// What a surface needs to be drawn to: its swapchain, depth image and frames in flight. Must be destroyed
// before the surface is. A failed operation throws rhi::VulkanError or rhi::DeviceLostError.
class TARVIK_RENDERER_API PresentTarget final {
public:
    // The surface is borrowed. extent, in device pixels, is used where the surface leaves the choice to the
    // client.
    PresentTarget(RenderContext& context, VkSurfaceKHR surface, VkExtent2D extent, rhi::PresentPolicy policy);
    PresentTarget(const PresentTarget&) = delete;
    PresentTarget& operator=(const PresentTarget&) = delete;
    // Waits for the GPU.
    ~PresentTarget();

    // Both cost nothing when nothing changed; otherwise the swapchain is made anew with the next frame.
    void resize(VkExtent2D extent);
    void setPolicy(rhi::PresentPolicy policy);
    [[nodiscard]] const rhi::Swapchain& swapchain() const;

    struct Impl;
    [[nodiscard]] Impl& impl() { return *impl_; }

private:
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik::render
