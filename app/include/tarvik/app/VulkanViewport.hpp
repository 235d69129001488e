#pragma once

#include <tarvik/app/Export.hpp>
#include <tarvik/input/InputState.hpp>

#include <QElapsedTimer>
#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <glm/vec2.hpp>

#include <vulkan/vulkan_core.h>

#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>

namespace tarvik {
class Scene;
}
namespace tarvik::render {
enum class FrameResult : std::uint8_t;
class PresentTarget;
} // namespace tarvik::render
namespace tarvik::rhi {
enum class PresentPolicy : std::uint8_t;
}

namespace tarvik::app {

class AppContext;
class GamepadReader;
class ViewportClient;
class WaylandPointerLock;

// A window that shows its client's scene and keeps drawing while it is exposed. Embed it with
// QWidget::createWindowContainer and name the container with setInputContainer. GUI thread only.
class TARVIK_APPCOMMON_API VulkanViewport final : public QWindow {
    Q_OBJECT

public:
    // Both are borrowed and must outlive the viewport. Without a renderer the viewport has failed from the
    // start, without a signal: see AppContext::rendererError().
    VulkanViewport(AppContext& context, ViewportClient& viewportClient);
    ~VulkanViewport() override;

    // The client's scene as the final picture, without editor overlays, at size in device pixels. Works while
    // the window is hidden. Null when the viewport has failed or the picture cannot be made.
    [[nodiscard]] QImage captureFrame(QSize size);

    void setVsync(bool on);

    // The widget that hosts the viewport. Needed where it is embedded, and on Wayland wherever it may be
    // hidden and shown again: the container tells of its hiding before the window's surface goes away, the
    // window itself too late.
    // It also takes drops in the viewport's place, and, where the pointer can be locked, all pointer events.
    void setInputContainer(QWidget* widget);

    // Every key and button up, mouse look over, as when the focus goes.
    void releaseInput();

    // Length of the last frame step, 0 to 250.
    [[nodiscard]] double frameIntervalMs() const;
    // Once failed, a viewport stays blank; make a new one.
    [[nodiscard]] bool hasFailed() const;
    [[nodiscard]] const InputState& input() const;

Q_SIGNALS:
    // After every presented frame.
    void frameRendered();
    // Once, with the first failure, worded for the user.
    void renderFailed(const QString& message);
    // Before the client sees the press. A receiver may destroy the viewport with deleteLater() only.
    void pointerPressed();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool ensureTarget();
    void releaseTarget();
    void releaseWindow();
    void replaceWindow();
    [[nodiscard]] WId nativeParent() const;
    void wakeWhenNotExposed();
    void renderFrame();
    bool drawFrame();
    void countFrame(render::FrameResult result);
    void scheduleNextFrame();
    void fail(const QString& message);
    void fail(const std::exception_ptr& exception);
    [[nodiscard]] VkExtent2D pixelExtent() const;
    [[nodiscard]] rhi::PresentPolicy policy() const;

    [[nodiscard]] bool takeInput(QEvent* event);
    [[nodiscard]] bool isPassingThrough() const;
    bool passKeyOn(QKeyEvent& event);
    bool takeKey(const QKeyEvent& event);
    [[nodiscard]] bool takeFromApplication(QObject* watched, QEvent* event);
    void releaseElsewhere(Qt::MouseButton button);
    [[nodiscard]] bool takeFromContainer(QEvent* event);
    [[nodiscard]] bool takeKeyFrom(const QObject* window, QKeyEvent& event);
    [[nodiscard]] bool overrideShortcut(QKeyEvent& event) const;
    [[nodiscard]] bool handleDrag(QEvent* event);
    void takeFocus();
    [[nodiscard]] QPointF motionTo(QPointF position);
    void warpWhenAstray(QPointF position);
    void startLooking();
    void stopLooking();
    void hideCursor();
    void entered();
    void left();
    [[nodiscard]] bool engaged() const;
    [[nodiscard]] bool hasKeys() const;
    void updateEngagement(bool isHovered, bool isClickEngaged);
    [[nodiscard]] glm::vec2 toNdc(QPointF position) const;
    [[nodiscard]] QWindow* topLevelWindow();
    [[nodiscard]] bool isAround(const QObject* object);

    AppContext& ctx;
    ViewportClient& client;
    std::unique_ptr<render::PresentTarget> target;
    std::unique_ptr<Scene> emptyScene;
    std::unique_ptr<WaylandPointerLock> pointerLock;
    QPointer<QWidget> container;
    QTimer lockDrainTimer;
    InputState inputState;
    std::unique_ptr<GamepadReader> gamepad;
    QElapsedTimer frameClock;
    QElapsedTimer frameStart;
    QPointF lastPos;
    QPointF pressPos;
    std::optional<QPointF> warpedFrom; // until the warp is seen to have arrived; lastPos is where it goes
    std::array<quint32, kKeyCount> scanCodes{}; // of each key at its last press
    Qt::MouseButton pressing = Qt::NoButton;    // while its press is being told
    bool dragged = false;
    bool hovered = false;
    bool clickEngaged = false;
    bool pressConsumed = false;
    bool looking = false;
    bool warpAvailable = true;
    bool failed = false;
    bool vsyncEnabled = true;
    bool framePending = false;
    bool wakePending = false;
    bool targetUnseen = false; // it has presented nothing yet
    WId bornUnder = 0;         // the native parent of the native window when that was made
    double frameInterval = 0.0;
    QElapsedTimer statsTimer;
    std::int32_t presentedCount = 0;
    std::int32_t skippedCount = 0;
};

} // namespace tarvik::app
