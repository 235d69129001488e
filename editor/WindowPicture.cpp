#include "WindowPicture.hpp"

#include "ViewportPane.hpp"

#include <tarvik/app/VulkanViewport.hpp>

#include <QPainter>

namespace tarvik::editor {

QImage windowPicture(QWidget& window, const ViewportPane& pane) {
    QWidget* container = pane.container();
    if (container == nullptr || pane.viewport() == nullptr)
        return {};
    const double ratio = container->devicePixelRatioF();
    const QImage scene = pane.viewport()->captureFrame((QSizeF(container->size()) * ratio).toSize());
    if (scene.isNull())
        return {};
    QImage picture = window.grab().toImage();
    QPainter painter(&picture);
    painter.drawImage(QRect(container->mapTo(&window, QPoint(0, 0)), container->size()), scene);
    return picture;
}

} // namespace tarvik::editor
