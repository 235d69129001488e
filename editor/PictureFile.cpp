#include "PictureFile.hpp"

#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

namespace tarvik::editor {

std::expected<void, Error> writePicture(const QImage& picture, const QString& file) {
    const auto failure = [&file](const QString& reason) {
        return makeError("{}: {}", file.toStdString(), reason.toStdString());
    };
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return failure(out.errorString());
    QImageWriter writer(&out, QFileInfo(file).suffix().toLower().toLatin1());
    if (!writer.write(picture))
        return failure(writer.errorString());
    if (!out.commit())
        return failure(out.errorString());
    return {};
}

} // namespace tarvik::editor
