// The renderer library's classes with a script in place of Vulkan.
#include "Script.hpp"

#include <tarvik/renderer/Instance.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tarvik::rhi {

using scripted::script;

std::vector<std::string> Instance::availableExtensions() {
    script().note("extensions");
    return script().extensions;
}

struct Swapchain::Impl {};
Swapchain::Swapchain(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Swapchain::~Swapchain() = default;
bool Swapchain::presentBlocks() const {
    return script().presentBlocks;
}

} // namespace tarvik::rhi

namespace tarvik::render {

using scripted::script;

namespace {

std::string words(VkExtent2D extent) {
    return fmt::format("{}x{}", extent.width, extent.height);
}

const char* words(rhi::PresentPolicy policy) {
    return policy == rhi::PresentPolicy::Vsync ? "Vsync" : "NoVsync";
}

} // namespace

struct RenderContext::Impl {};

RenderContext::RenderContext(const RenderContextConfig& config) : impl_(std::make_unique<Impl>()) {
    script().note("context+",
                  fmt::format("{} validation={} gpu={}", fmt::join(config.instanceExtensions, " "),
                              config.enableValidation,
                              config.preferredDevice ? std::to_string(*config.preferredDevice) : "any"));
}
RenderContext::~RenderContext() {
    script().note("context-");
}
// Qt makes an instance of its own when it is handed none.
VkInstance RenderContext::vkInstance() const {
    return VK_NULL_HANDLE;
}
struct PresentTarget::Impl {
    rhi::Swapchain swapchain{nullptr};
};

PresentTarget::PresentTarget(RenderContext&, VkSurfaceKHR, VkExtent2D extent, rhi::PresentPolicy policy)
    : impl_(std::make_unique<Impl>()) {
    script().note("target+", fmt::format("{} {}", words(extent), words(policy)));
}
PresentTarget::~PresentTarget() {
    script().note("target-");
}
void PresentTarget::resize(VkExtent2D extent) {
    script().note("resize", words(extent));
}
void PresentTarget::setPolicy(rhi::PresentPolicy policy) {
    script().note("policy", words(policy));
}
const rhi::Swapchain& PresentTarget::swapchain() const {
    return impl_->swapchain;
}

struct Renderer::Impl {};

Renderer::Renderer(RenderContext&) {
    script().note("renderer+");
}
Renderer::~Renderer() {
    script().note("renderer-");
}
void Renderer::waitIdle() {
    script().note("waitIdle");
}

FrameResult Renderer::render(PresentTarget&, const Scene& scene, const CameraView&, const RenderSettings&) {
    script().note("render", scene.name());
    return script().frameResult;
}

std::expected<CapturedImage, Error> Renderer::capture(const Scene& scene, const CameraView&,
                                                      VkExtent2D extent, const RenderSettings& settings) {
    script().note("capture", fmt::format("{} {} {}", scene.name(), words(extent),
                                         settings.finalPicture ? "final" : "with overlays"));
    if (script().captureError)
        return std::unexpected(Error{*script().captureError});
    CapturedImage image{extent.width, extent.height, {}};
    for (std::uint32_t i = 0; i < extent.width * extent.height; ++i) {
        const auto low = static_cast<std::uint8_t>(i);
        const auto high = static_cast<std::uint8_t>(i >> 8U);
        image.pixels.insert(image.pixels.end(), {low, high, 7, 255});
    }
    return image;
}

} // namespace tarvik::render
