#include <tarvik/app/VulkanViewport.hpp>

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/app/ViewportClient.hpp>
#include <tarvik/app/WaylandPointerLock.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/Renderer.hpp>
#include <tarvik/renderer/Swapchain.hpp>
#include <tarvik/scene/Scene.hpp>

#include <QCoreApplication>
#include <QExposeEvent>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QScreen>
#include <QVulkanInstance>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <utility>

namespace tarvik::app {

namespace {

constexpr double kLongestStep = 0.25; // seconds
constexpr double kFallbackRefreshRate = 60.0;
constexpr std::chrono::milliseconds kLockDrainInterval{250};
constexpr std::chrono::milliseconds kStatisticsWindow{1000};

double seconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

float aspectRatio(double width, double height) {
    return static_cast<float>(width) / static_cast<float>(height);
}

} // namespace

VulkanViewport::VulkanViewport(AppContext& context, ViewportClient& viewportClient)
    : ctx(context),
      client(viewportClient),
      emptyScene(std::make_unique<Scene>("Empty")),
      gamepad(std::make_unique<GamepadReader>()) {
    setSurfaceType(QSurface::VulkanSurface);
    if (QVulkanInstance* instance = ctx.vulkanInstance())
        setVulkanInstance(instance);
    else
        failed = true;

    warpAvailable = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    vsyncEnabled = ctx.options().vsync.value_or(true);
    if (QCoreApplication* application = QCoreApplication::instance())
        application->installEventFilter(this);
    connect(this, &QWindow::visibleChanged, this, [this](bool visible) {
        if (visible)
            return;
        releaseInput();
        updateEngagement(false, false);
        releaseTarget();
    });

    if (!warpAvailable)
        pointerLock = WaylandPointerLock::create();
    if (pointerLock) {
        // Motion that arrives while no frames are drawn must not add up to one great leap. While they are,
        // however slowly, it belongs to the next one.
        connect(&lockDrainTimer, &QTimer::timeout, this, [this] {
            if (!framePending)
                static_cast<void>(pointerLock->takeMotion());
        });
        lockDrainTimer.start(kLockDrainInterval);
    }
    frameClock.start();
    frameStart.start();
}

VulkanViewport::~VulkanViewport() {
    releaseTarget();
    stopLooking();
    // The base class hides itself when this object's members are gone.
    disconnect(this, &QWindow::visibleChanged, this, nullptr);
}

QImage VulkanViewport::captureFrame(QSize size) {
    try {
        render::Renderer* renderer = ctx.renderer();
        if (renderer == nullptr || failed || size.isEmpty())
            return {};

        const Scene* scene = client.activeScene();
        render::RenderSettings settings = client.renderSettings();
        settings.finalPicture = true;
        const CameraView view = client.cameraView(aspectRatio(size.width(), size.height()));
        const VkExtent2D extent{static_cast<std::uint32_t>(size.width()),
                                static_cast<std::uint32_t>(size.height())};
        const auto captured = renderer->capture(scene ? *scene : *emptyScene, view, extent, settings);
        if (!captured)
            return {};
        return QImage(captured->pixels.data(), static_cast<int>(captured->width),
                      static_cast<int>(captured->height), QImage::Format_RGBA8888)
            .copy();
    } catch (const std::exception& e) {
        log::error("Viewport", "capture failed: {}", e.what());
    } catch (...) {
        log::error("Viewport", "capture failed: an exception of unknown type");
    }
    return {};
}

void VulkanViewport::setVsync(bool on) {
    vsyncEnabled = on;
    if (target)
        target->setPolicy(policy());
}

double VulkanViewport::frameIntervalMs() const {
    return frameInterval;
}

bool VulkanViewport::hasFailed() const {
    return failed;
}

const InputState& VulkanViewport::input() const {
    return inputState;
}

bool VulkanViewport::event(QEvent* event) {
    const QPointer<VulkanViewport> self(this);
    try {
        switch (event->type()) {
        case QEvent::UpdateRequest:
            scheduleNextFrame();
            return true;
        case QEvent::PlatformSurface:
            if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
                releaseTarget();
            else
                bornUnder = nativeParent();
            break;
        default:
            break;
        }
        return takeInput(event) || QWindow::event(event);
    } catch (...) {
        if (self)
            fail(std::current_exception());
        return true;
    }
}

void VulkanViewport::exposeEvent(QExposeEvent* /*event*/) {
    log::debug("Viewport", "expose: {}", isExposed() ? "visible" : "hidden - rendering paused");
    if (isExposed())
        scheduleNextFrame();
    else
        releaseTarget();
}

bool VulkanViewport::ensureTarget() {
    if (target)
        return true;
    if (ctx.renderer() == nullptr) {
        fail(ctx.rendererError());
        return false;
    }
    if (bornUnder != nativeParent()) {
        replaceWindow();
        return false;
    }
    const VkSurfaceKHR surface = QVulkanInstance::surfaceForWindow(this);
    if (surface == VK_NULL_HANDLE)
        return false;
    try {
        target =
            std::make_unique<render::PresentTarget>(*ctx.renderContext(), surface, pixelExtent(), policy());
        targetUnseen = true;
        return true;
    } catch (const std::exception& e) {
        fail(QStringLiteral("Cannot create swapchain: %1").arg(QString::fromUtf8(e.what())));
        return false;
    }
}

void VulkanViewport::releaseTarget() {
    if (!target)
        return;
    try {
        if (render::Renderer* renderer = ctx.renderer())
            renderer->waitIdle();
    } catch (const std::exception& e) {
        log::error("Viewport", "waitIdle failed while releasing swapchain: {}", e.what());
    }
    target.reset();
}

// Hiding or reparenting the container can replace the native window (X11) or its surface (Wayland) without a
// word to this window, which would go on presenting to what no longer exists. Letting the native window go
// first makes the next show start from a new one.
void VulkanViewport::releaseWindow() {
    releaseTarget();
    destroy();
}

// A top level that is shown with other window flags is a new native window on X11, made after its children
// were shown. They died with the old one, and nobody says so.
void VulkanViewport::replaceWindow() {
    releaseWindow();
    show();
}

WId VulkanViewport::nativeParent() const {
    return parent() && parent()->handle() ? parent()->winId() : 0;
}

// Some compositors never expose an embedded window that was shown together with its top level. Hiding and
// showing its container once wakes it.
void VulkanViewport::wakeWhenNotExposed() {
    constexpr std::chrono::milliseconds patience{200};
    // Before the top level is exposed there is nothing to wait for; its exposure comes here again.
    const auto sleeps = [this] {
        if (failed || isExposed() || !container || !container->isVisible())
            return false;
        const QWindow* topLevel = container->window()->windowHandle();
        return topLevel && topLevel->isExposed();
    };
    if (wakePending || !sleeps())
        return;
    wakePending = true;
    QTimer::singleShot(patience, this, [this, sleeps] {
        const QPointer<VulkanViewport> self(this);
        if (sleeps()) {
            const bool hadFocus = container->hasFocus();
            container->hide();
            if (self && container) {
                container->show(); // with a wake pending, which it would ask for
                if (hadFocus)
                    container->setFocus();
            }
        }
        if (self)
            wakePending = false;
    });
}

void VulkanViewport::scheduleNextFrame() {
    if (framePending || failed)
        return;
    framePending = true;

    double delay = 0.0;
    if (vsyncEnabled && target && !target->swapchain().presentBlocks()) {
        const double reported = screen() ? screen()->refreshRate() : 0.0;
        const double rate = reported > 1.0 ? reported : kFallbackRefreshRate;
        delay = std::max(1000.0 / rate - static_cast<double>(frameStart.nsecsElapsed()) * 1e-6, 0.0);
    }
    QTimer::singleShot(static_cast<int>(delay), Qt::PreciseTimer, this, [this] {
        framePending = false;
        renderFrame();
    });
}

void VulkanViewport::renderFrame() {
    if (failed || !isExposed())
        return;
    // A client or a receiver may destroy the viewport, hide it, or run an event loop of its own.
    const QPointer<VulkanViewport> self(this);
    if (!ensureTarget()) {
        if (self && !failed)
            scheduleNextFrame();
        return;
    }

    frameStart.restart();
    const double dt = std::clamp(seconds(frameClock), 0.0, kLongestStep);
    frameInterval = dt * 1000.0;
    frameClock.restart();
    try {
        if (pointerLock) {
            const glm::vec2 motion = pointerLock->takeMotion();
            if (looking && motion != glm::vec2(0.0F))
                inputState.addMouseDelta(motion);
        }
        gamepad->poll(inputState);
        client.update(static_cast<float>(dt), inputState, isActive());
        if (!self)
            return;
        inputState.endFrame();
        const bool presented = drawFrame();
        if (presented)
            Q_EMIT frameRendered();
        if (self)
            scheduleNextFrame();
    } catch (...) {
        if (self)
            fail(std::current_exception());
    }
}

// One picture to the target; whether it reached the screen. Any call of the client may have destroyed the
// viewport or hidden its window.
bool VulkanViewport::drawFrame() {
    const QPointer<VulkanViewport> self(this);
    const Scene* scene = client.activeScene();
    if (!self || !target)
        return false;
    const VkExtent2D extent = pixelExtent();
    target->resize(extent);

    render::Renderer* renderer = ctx.renderer();
    const render::RenderSettings settings = client.renderSettings();
    if (!self)
        return false;
    const CameraView view = client.cameraView(aspectRatio(extent.width, extent.height));
    if (!self || !target)
        return false;
    const render::FrameResult result =
        renderer->render(*target, scene ? *scene : *emptyScene, view, settings);

    if (result == render::FrameResult::SurfaceLost) {
        log::warn("Viewport", "surface lost - recreating");
        releaseTarget();
    }
    countFrame(result);
    if (result != render::FrameResult::Presented)
        return false;
    // Some Wayland compositors take a new subsurface's first picture in only when the surface around it is
    // drawn the next time.
    if (std::exchange(targetUnseen, false) && !warpAvailable && container)
        container->window()->update();
    return true;
}

void VulkanViewport::countFrame(render::FrameResult result) {
    if (!statsTimer.isValid())
        statsTimer.start();
    ++(result == render::FrameResult::Presented ? presentedCount : skippedCount);
    const qint64 elapsed = statsTimer.elapsed();
    if (elapsed < kStatisticsWindow.count())
        return;
    log::debug("Viewport", "{:.1f} frames/s presented, {} skipped (no swapchain image ready) in {:.1f} s",
               presentedCount * 1000.0 / static_cast<double>(elapsed), skippedCount,
               static_cast<double>(elapsed) / 1000.0);
    presentedCount = 0;
    skippedCount = 0;
    statsTimer.restart();
}

// What has failed stays failed: only the first reason is told. The target goes with the window.
void VulkanViewport::fail(const QString& message) {
    if (failed)
        return;
    failed = true;
    releaseInput();
    log::error("Viewport", "{}", message.toStdString());
    Q_EMIT renderFailed(message);
}

// A client may throw what it likes, but not into the event loop.
void VulkanViewport::fail(const std::exception_ptr& exception) {
    try {
        std::rethrow_exception(exception);
    } catch (const rhi::DeviceLostError& e) {
        fail(QStringLiteral(
                 "The GPU device was lost (driver reset or hang). Rendering is stopped; save your work "
                 "and restart Tarvik.\n\n%1")
                 .arg(QString::fromUtf8(e.what())));
    } catch (const std::exception& e) {
        fail(QStringLiteral("Rendering failed: %1").arg(QString::fromUtf8(e.what())));
    } catch (...) {
        fail(QStringLiteral("Rendering failed: an exception of unknown type"));
    }
}

VkExtent2D VulkanViewport::pixelExtent() const {
    const auto devicePixels = [ratio = devicePixelRatio()](int length) {
        return static_cast<std::uint32_t>(std::max(std::lround(length * ratio), 1L));
    };
    return {devicePixels(width()), devicePixels(height())};
}

rhi::PresentPolicy VulkanViewport::policy() const {
    return vsyncEnabled ? rhi::PresentPolicy::Vsync : rhi::PresentPolicy::NoVsync;
}

} // namespace tarvik::app
