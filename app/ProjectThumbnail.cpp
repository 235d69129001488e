#include <tarvik/app/ProjectThumbnail.hpp>

#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QRegularExpression>
#include <QString>
#include <QtMath>

#include <algorithm>

namespace tarvik::app {

namespace {

// Qt, which takes at least 32 bits a pixel, would say so on the console.
bool isTooLarge(const QSize& size) {
    const qint64 limit = QImageReader::allocationLimit(); // megabytes; 0 for none
    return limit > 0 && qint64{4} * size.width() * size.height() > limit << 20;
}

// A null picture when the file cannot be read or is too large to decode. Not straight into a pixmap, as those
// are cached. Opening a pipe would wait for its writer.
QImage readPicture(const QString& file) {
    if (!QFileInfo(file).isFile())
        return {};
    QImageReader reader(file);
    return isTooLarge(reader.size()) ? QImage() : reader.read();
}

// Scaled whole, a picture of a single row would fill gigabytes, of which the cut shows the first columns.
QImage withoutUnseenParts(const QImage& picture, const QSize& size) {
    constexpr double kMaxPixels = 32 << 20;
    const QSizeF whole = QSizeF(picture.size()).scaled(size, Qt::KeepAspectRatioByExpanding);
    if (whole.width() * whole.height() <= kMaxPixels)
        return picture;
    const QSizeF seen = QSizeF(size) * (picture.width() / whole.width());
    const QSize kept(qCeil(seen.width()), qCeil(seen.height()));
    return picture.copy(QRect(QPoint(), kept.boundedTo(picture.size())));
}

QString initialsOf(const QString& name) {
    static const QRegularExpression separators("[\\s_-]+");
    QString initials;
    for (const QString& part : name.split(separators, Qt::SkipEmptyParts)) {
        initials += part.front().toUpper();
        if (initials.size() == 2)
            break;
    }
    return initials;
}

QLinearGradient coloursOf(const QString& name, const QSize& size) {
    const int hue = static_cast<int>(static_cast<quint64>(qHash(QStringView(name), 0)) % 360);
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, QColor::fromHsv(hue, 120, 90));
    gradient.setColorAt(1, QColor::fromHsv((hue + 40) % 360, 140, 40));
    return gradient;
}

} // namespace

QImage projectThumbnailImage(const QString& root, const QSize& size) {
    const QImage picture = readPicture(root + "/Saved/Thumbnail.png");
    if (picture.isNull() || size.isEmpty())
        return {};
    return withoutUnseenParts(picture, size)
        .convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                   : QImage::Format_RGB32)
        .scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation)
        .copy(QRect(QPoint(), size));
}

QPixmap projectThumbnail(const QString& root, const QString& name, const QSize& size) {
    const QImage picture = projectThumbnailImage(root, size);
    return picture.isNull() ? placeholderThumbnail(name, size) : QPixmap::fromImage(picture);
}

QPixmap placeholderThumbnail(const QString& name, const QSize& size) {
    if (size.isEmpty())
        return {};
    QPixmap thumbnail(size);
    thumbnail.fill(Qt::transparent);
    const QRect whole(QPoint(), size);
    QPainter painter(&thumbnail);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(whole, coloursOf(name, size));

    const int horizon = 2 * size.height() / 3;
    painter.setPen(QColor(255, 255, 255, 30));
    painter.drawLine(0, horizon, size.width(), horizon);

    QFont font = painter.font();
    font.setPixelSize(std::max(size.height() / 3, 1));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(QColor(255, 255, 255, 220));
    const QString initials = initialsOf(name);
    painter.drawText(whole, Qt::AlignCenter, initials.isEmpty() ? "?" : initials);
    return thumbnail;
}

} // namespace tarvik::app
