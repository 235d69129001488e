#pragma once

#include <tarvik/app/Export.hpp>

#include <QImage>

class QWidget;

namespace tarvik::app {

class VulkanViewport;

// Marks container as the widget that hosts viewport. The viewport is borrowed: it must live as long as the
// mark, which goes with the container; null takes it away.
TARVIK_APPCOMMON_API void registerViewportContainer(QWidget* container, VulkanViewport* viewport);

// A picture of the widget in device pixels, with a fresh final picture of the scene where it has visible,
// registered containers below it. What a viewport cannot draw is left as the widget paints it. GUI thread
// only; waits for the pictures.
[[nodiscard]] TARVIK_APPCOMMON_API QImage snapshotWidget(QWidget* widget);

} // namespace tarvik::app
