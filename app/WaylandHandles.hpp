#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <utility>

class QWindow;
struct wl_display;
struct wl_surface;

// What Qt knows about its Wayland connection and keeps in its private headers. GUI thread only.
namespace tarvik::app::wayland {

// Null on other platforms. Lives until the application's own destroyed() signal is over.
wl_display* display();

// Null without a native window; hiding the window destroys it, showing it makes another one.
wl_surface* surface(QWindow& window);

// Lengths on the surface per logical pixel of the window.
double surfaceUnitsPerPixel(const QWindow& window);

// Null while the pointer is over none.
QWindow* windowUnderPointer();

// Tells when the surface of a window is about to go, which a hidden window does without any event.
class SurfaceWatch final : public QObject {
    Q_OBJECT

public:
    explicit SurfaceWatch(std::function<void()> gone) : gone_(std::move(gone)) {}
    // In place of the window watched so far.
    void watch(const QWindow& window);

private:
    Q_SLOT void surfaceGone() { gone_(); }

    std::function<void()> gone_;
    QPointer<QObject> watched_;
};

} // namespace tarvik::app::wayland
