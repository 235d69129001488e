// The renderer library's classes, doing nothing. The program has them itself, so the linker takes none from
// the scripted renderer, whose log would cost more than the frame.
#include <tarvik/renderer/Instance.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/renderer/Renderer.hpp>

namespace tarvik::rhi {

std::vector<std::string> Instance::availableExtensions() {
    return {"VK_KHR_surface"};
}

struct Swapchain::Impl {};
Swapchain::Swapchain(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Swapchain::~Swapchain() = default;
bool Swapchain::presentBlocks() const {
    return false;
}

} // namespace tarvik::rhi

namespace tarvik::render {

struct RenderContext::Impl {
    std::string deviceName;
};
RenderContext::RenderContext(const RenderContextConfig& /*config*/) : impl_(std::make_unique<Impl>()) {}
RenderContext::~RenderContext() = default;
// Qt makes an instance of its own when it is handed none.
VkInstance RenderContext::vkInstance() const {
    return VK_NULL_HANDLE;
}
const std::string& RenderContext::deviceName() const {
    return impl_->deviceName;
}

struct PresentTarget::Impl {
    rhi::Swapchain swapchain{nullptr};
};
PresentTarget::PresentTarget(RenderContext& /*context*/, VkSurfaceKHR /*surface*/, VkExtent2D /*extent*/,
                             rhi::PresentPolicy /*policy*/)
    : impl_(std::make_unique<Impl>()) {}
PresentTarget::~PresentTarget() = default;
void PresentTarget::resize(VkExtent2D /*extent*/) {}
void PresentTarget::setPolicy(rhi::PresentPolicy /*policy*/) {}
const rhi::Swapchain& PresentTarget::swapchain() const {
    return impl_->swapchain;
}

struct Renderer::Impl {};
Renderer::Renderer(RenderContext& /*context*/) {}
Renderer::~Renderer() = default;
void Renderer::waitIdle() {}
FrameResult Renderer::render(PresentTarget& /*target*/, const Scene& /*scene*/, const CameraView& /*view*/,
                             const RenderSettings& /*settings*/) {
    return FrameResult::Presented;
}
std::expected<CapturedImage, Error> Renderer::capture(const Scene& /*scene*/, const CameraView& /*view*/,
                                                      VkExtent2D /*extent*/,
                                                      const RenderSettings& /*settings*/) {
    return CapturedImage{};
}

} // namespace tarvik::render
