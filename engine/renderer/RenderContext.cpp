#include "ContextImpl.hpp"

#include "Gpu.hpp"
#include "Platform.hpp"

#include <tarvik/core/Log.hpp>

#include <filesystem>
#include <system_error>

namespace tarvik::render {

namespace {

rhi::GpuCandidate choose(VkInstance instance, std::optional<std::uint32_t> preferred) {
    const auto gpus = rhi::findGpus(instance);
    const rhi::GpuCandidate& gpu = rhi::chooseGpu(gpus, preferred);
    log::info("Renderer", "GPU {}: {} ({})", gpu.index, gpu.name, rhi::kindName(gpu.type));
    return gpu;
}

std::filesystem::path cacheDirectory(const RenderContextConfig& config) {
    if (!config.pipelineCache)
        return {};
    try {
        return config.pipelineCacheDirectory.empty() ? rhi::userCacheDirectory()
                                                     : std::filesystem::path(config.pipelineCacheDirectory);
    } catch (const std::system_error& error) { // no name that a file of this system can have
        log::debug("Renderer", "pipeline cache not used: {}", error.what());
        return {};
    }
}

} // namespace

RenderContext::Impl::Impl(const RenderContextConfig& config)
    : instance(config.instanceExtensions,
               config.enableValidation ? rhi::Validation::On : rhi::Validation::Off),
      device(instance, choose(instance.get(), config.preferredDevice)),
      pipelineCache(device, cacheDirectory(config)),
      shaders(config.shaderDirectory) {}

RenderContext::Impl::~Impl() {
    // A lost device is not asked for anything more.
    if (device.vk.vkDeviceWaitIdle(device.handle) == VK_SUCCESS)
        pipelineCache.save();
}

RenderContext::RenderContext(const RenderContextConfig& config) : impl_(std::make_unique<Impl>(config)) {}

RenderContext::~RenderContext() = default;

VkInstance RenderContext::vkInstance() const {
    return impl_->instance.get();
}

const std::string& RenderContext::deviceName() const {
    return impl_->device.name;
}

} // namespace tarvik::render
