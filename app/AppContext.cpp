#include <tarvik/app/AppContext.hpp>

#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>
#include <tarvik/renderer/Instance.hpp>
#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/renderer/Renderer.hpp>

#include <QMetaType>
#include <QVulkanInstance>

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::app {

namespace {

constexpr const char* kSurfaceExtension = "VK_KHR_surface";

// One list for every platform: the loader offers those that make sense where it runs.
std::vector<std::string> selectInstanceExtensions() {
    static constexpr std::array kWanted = {
        kSurfaceExtension,     "VK_KHR_wayland_surface", "VK_KHR_xcb_surface",
        "VK_KHR_xlib_surface", "VK_KHR_win32_surface",
    };
    const std::vector<std::string> available = rhi::Instance::availableExtensions();
    std::vector<std::string> selected;
    for (const char* name : kWanted) {
        if (std::ranges::find(available, name) != available.end())
            selected.emplace_back(name);
    }
    return selected;
}

} // namespace

AppContext::AppContext(AppOptions options)
    : options_(std::move(options)),
      registry(ProjectRegistry::defaultStorageFile()),
      logBridge(std::make_unique<LogBridge>()) {
    qRegisterMetaType<UiLogEntry>("tarvik::app::UiLogEntry");
    logSink_ = std::make_shared<QtLogSink>(*logBridge);
    Logger::instance().addSink(logSink_);
    try {
        // After the sink, so that the log panel can show why the list is empty.
        if (const auto loaded = registry.load(); !loaded)
            log::warn("Hub", "{}", loaded.error().message);
    } catch (...) {
        Logger::instance().removeSink(logSink_); // it refers to the bridge, which goes now
        throw;
    }
}

AppContext::~AppContext() {
    releaseRenderer();
    Logger::instance().removeSink(logSink_);
}

const AppOptions& AppContext::options() const {
    return options_;
}

render::RenderContext* AppContext::renderContext() {
    return initRenderer() ? renderContext_.get() : nullptr;
}

render::Renderer* AppContext::renderer() {
    return initRenderer() ? renderer_.get() : nullptr;
}

QVulkanInstance* AppContext::vulkanInstance() {
    return initRenderer() ? vulkanInstance_.get() : nullptr;
}

bool AppContext::validationEnabled() const {
    return options_.validation.value_or(false);
}

const QString& AppContext::rendererError() const {
    return rendererError_;
}

void AppContext::saveRecentProjects() {
    if (const auto saved = registry.save(); !saved)
        log::warn("Hub", "could not save recent projects: {}", saved.error().message);
}

bool AppContext::initRenderer() {
    if (startAttempted_)
        return renderer_ != nullptr;
    startAttempted_ = true;

    try {
        render::RenderContextConfig config;
        config.enableValidation = validationEnabled();
        config.preferredDevice = options_.gpu;
        config.instanceExtensions = selectInstanceExtensions();
        if (std::ranges::find(config.instanceExtensions, kSurfaceExtension) ==
            config.instanceExtensions.end()) {
            throw rhi::UnsupportedHardwareError(
                "the Vulkan loader offers no VK_KHR_surface; cannot present to windows");
        }
        renderContext_ = std::make_unique<render::RenderContext>(config);
        renderer_ = std::make_unique<render::Renderer>(*renderContext_);

        vulkanInstance_ = std::make_unique<QVulkanInstance>();
        // The renderer reports validation messages itself, and Qt's way needs an extension that is not
        // enabled.
        vulkanInstance_->setFlags(QVulkanInstance::NoDebugOutputRedirect);
        vulkanInstance_->setVkInstance(renderContext_->vkInstance());
        if (!vulkanInstance_->create()) {
            throw rhi::VulkanError("QVulkanInstance could not adopt the Vulkan instance",
                                   VK_ERROR_INITIALIZATION_FAILED);
        }
        return true;
    } catch (const std::exception& e) {
        rendererError_ = QString::fromUtf8(e.what());
        log::error("Renderer", "Vulkan initialisation failed: {}", e.what());
        releaseRenderer();
        return false;
    }
}

// The wrapper only adopted the context's Vulkan instance, so it goes first; the renderer was built on the
// context, so that goes last.
void AppContext::releaseRenderer() {
    vulkanInstance_.reset();
    renderer_.reset();
    renderContext_.reset();
}

} // namespace tarvik::app
