#include "ThumbnailWriter.hpp"

#include "PictureFile.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>

#include <QDir>

namespace tarvik::editor {
namespace {

constexpr QSize kSize(640, 400); // of a card's shape, for screens of twice the usual density

} // namespace

void writeThumbnail(app::VulkanViewport* viewport, const std::filesystem::path& projectRoot) {
    if (viewport == nullptr || viewport->hasFailed())
        return;
    const QDir root(app::toQString(projectRoot));
    const QString file = root.filePath("Saved/Thumbnail.png");
    const QImage picture = viewport->captureFrame(kSize);
    if (picture.isNull()) {
        log::warn("Editor", "{}: the scene could not be captured", file.toStdString());
        return;
    }
    // Not with its parents: a project that was deleted meanwhile must not come back as an empty folder. That
    // the folder cannot be made, the file tells.
    root.mkdir("Saved");
    if (const auto written = writePicture(picture, file); !written)
        log::warn("Editor", "{}", written.error().message);
}

} // namespace tarvik::editor
