#include <tarvik/app/Snapshot.hpp>

#include <tarvik/app/VulkanViewport.hpp>

#include <QPainter>
#include <QPixmap>
#include <QVariant>
#include <QWidget>

namespace tarvik::app {

namespace {

const char* const kViewportProperty = "tarvikViewport";

// The pixels that a widget's rectangle covers in a picture of that ratio. Its sides are rounded one by one,
// as the painter does, so that neighbours neither overlap nor part.
QRect devicePixels(const QRect& logical, double ratio) {
    const auto scaled = [ratio](QPoint corner) {
        return (QPointF(corner) * ratio).toPoint();
    };
    return {scaled(logical.topLeft()),
            scaled(logical.topLeft() + QPoint(logical.width(), logical.height())) - QPoint(1, 1)};
}

} // namespace

void registerViewportContainer(QWidget* container, VulkanViewport* viewport) {
    container->setProperty(kViewportProperty, QVariant::fromValue<QObject*>(viewport));
}

QImage snapshotWidget(QWidget* widget) {
    const double ratio = widget->devicePixelRatio();
    QImage image = widget->grab().toImage();
    // Painted in device pixels: each pixel of a frame is one of the picture's.
    image.setDevicePixelRatio(1.0);
    {
        QPainter painter(&image);
        for (const QWidget* descendant : widget->findChildren<QWidget*>()) {
            auto* viewport =
                qobject_cast<VulkanViewport*>(descendant->property(kViewportProperty).value<QObject*>());
            if (!viewport || !descendant->isVisible())
                continue;
            const QRect place(descendant->mapTo(widget, QPoint(0, 0)), descendant->size());
            const QRect area = devicePixels(place, ratio);
            const QImage frame = viewport->captureFrame(area.size());
            if (!frame.isNull())
                painter.drawImage(area, frame);
        }
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace tarvik::app
