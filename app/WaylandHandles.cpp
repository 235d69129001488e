#include "WaylandHandles.hpp"

#include <QGuiApplication>
#include <QWindow>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qplatformwindow.h>

namespace tarvik::app::wayland {

wl_display* display() {
    if (!qGuiApp || !QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return nullptr;
    return static_cast<wl_display*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
}

wl_surface* surface(QWindow& window) {
    if (!window.handle())
        return nullptr;
    return static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

double surfaceUnitsPerPixel(const QWindow& window) {
    return window.devicePixelRatio() / window.handle()->devicePixelRatio();
}

QWindow* windowUnderPointer() {
    return QGuiApplicationPrivate::currentMouseWindow;
}

void SurfaceWatch::watch(const QWindow& window) {
    if (watched_)
        watched_->disconnect(this);
    // The class of the signal has no header outside of Qt, and a later Qt has renamed the signal.
    watched_ = dynamic_cast<QObject*>(window.handle());
    if (!watched_)
        return;
    if (watched_->metaObject()->indexOfSignal("wlSurfaceDestroyed()") >= 0)
        connect(watched_, SIGNAL(wlSurfaceDestroyed()), this, SLOT(surfaceGone()));
    else
        connect(watched_, SIGNAL(surfaceDestroyed()), this, SLOT(surfaceGone()));
}

} // namespace tarvik::app::wayland
