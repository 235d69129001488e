#pragma once

#include <tarvik/app/AppOptions.hpp>
#include <tarvik/app/Export.hpp>
#include <tarvik/app/LogBridge.hpp>
#include <tarvik/project/ProjectRegistry.hpp>

#include <QString>

#include <memory>

class QVulkanInstance;

namespace tarvik {
class LogSink;
}
namespace tarvik::render {
class RenderContext;
class Renderer;
} // namespace tarvik::render

namespace tarvik::app {

// What the whole process shares: options, recent projects, log history, and the render objects, which are
// made when they are first asked for. Lives on the GUI thread, outlives every viewport.
class TARVIK_APPCOMMON_API AppContext final {
public:
    // Connects the log and loads the recent projects; a failure of that is a log line. Vulkan is not touched.
    explicit AppContext(AppOptions options);
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;
    // Saves nothing.
    ~AppContext();

    [[nodiscard]] const AppOptions& options() const;

    // The first call of any of the three starts the renderer, once in the context's life: all are null from
    // then on if that fails, and rendererError() says why. The objects stay the context's own.
    [[nodiscard]] render::RenderContext* renderContext();
    [[nodiscard]] render::Renderer* renderer();
    [[nodiscard]] QVulkanInstance* vulkanInstance();

    // What was asked for, whether or not validation could be had.
    [[nodiscard]] bool validationEnabled() const;
    // Empty before the renderer was asked for, and when it started.
    [[nodiscard]] const QString& rendererError() const;

    // A failure is a log line.
    void saveRecentProjects();

private:
    bool initRenderer();
    void releaseRenderer();

    // In the order of their lives: what comes later goes first.
    AppOptions options_;

public:
    ProjectRegistry registry;
    std::unique_ptr<LogBridge> logBridge;

private:
    std::shared_ptr<LogSink> logSink_;
    std::unique_ptr<render::RenderContext> renderContext_;
    std::unique_ptr<render::Renderer> renderer_;
    std::unique_ptr<QVulkanInstance> vulkanInstance_;
    bool startAttempted_ = false;
    QString rendererError_;
};

} // namespace tarvik::app
