#include "PictureSaver.hpp"

#include "DisplayText.hpp"
#include "FileDialogs.hpp"
#include "PictureDialog.hpp"
#include "PictureFile.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/Snapshot.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QStandardPaths>

namespace tarvik::editor {
namespace {

QString proposedFile(const QString& name) {
    // What some file system does not allow in a name.
    static const QRegularExpression forbidden(R"([\x00-\x1f<>:"/\\|?*])");
    QString folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (!QDir(folder).exists())
        folder = QDir::homePath();
    return folder + '/' + name.first(wholeCharacters(name, 100)).replace(forbidden, "_") + ".png";
}

} // namespace

PictureSaver::PictureSaver(QWidget& window, ViewportPane& pane)
    : QObject(&window),
      window_(window),
      pane_(pane) {}

void PictureSaver::askForScene(const QString& name) {
    const app::VulkanViewport* viewport = pane_.viewport();
    if (viewport == nullptr) {
        Q_EMIT failed(tr("There is no picture to save: the scene is not drawn."));
        return;
    }
    const QSize seen = (QSizeF(viewport->size()) * viewport->devicePixelRatio()).toSize();
    auto* dialog = new PictureDialog(seen, proposedFile(name), &window_);
    connect(dialog, &PictureDialog::pictureRequested, this, &PictureSaver::saveScene);
    dialog->open();
}

void PictureSaver::askForWindow(const QString& name) {
    QFileDialog* dialog = createPictureDialog(&window_, tr("Save Picture of Window"), proposedFile(name));
    connect(dialog, &QFileDialog::fileSelected, this, &PictureSaver::saveWindow);
    dialog->open();
}

void PictureSaver::saveScene(QSize size, const QString& file) {
    app::VulkanViewport* viewport = pane_.viewport();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const QImage picture = viewport != nullptr ? viewport->captureFrame(size) : QImage();
    QGuiApplication::restoreOverrideCursor();
    if (picture.isNull()) {
        Q_EMIT failed(tr("%1: the scene could not be drawn at %2 × %3 pixels; the log may say why")
                          .arg(file, QString::number(size.width()), QString::number(size.height())));
        return;
    }
    save(picture, file);
}

void PictureSaver::saveWindow(const QString& file) {
    save(app::snapshotWidget(&window_), file);
}

void PictureSaver::save(const QImage& picture, const QString& file) {
    if (const auto written = writePicture(picture, file); !written)
        Q_EMIT failed(QString::fromStdString(written.error().message));
    else
        log::info("Editor", "saved {}, {} × {} pixels", file.toStdString(), picture.width(),
                  picture.height());
}

} // namespace tarvik::editor
