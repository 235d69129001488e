#include "ThumbnailWriter.hpp"

#include "Background.hpp"
#include "PictureFile.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/Log.hpp>

#include <QDir>

namespace tarvik::editor {
namespace {

constexpr QSize kSize(640, 400); // of a card's shape, for screens of twice the usual density

std::expected<void, Error> write(const QImage& picture, const QDir& root) {
    // Not with its parents: a project that was deleted meanwhile must not come back as an empty folder. That
    // the folder cannot be made, the file tells.
    root.mkdir("Saved");
    return writePicture(picture, root.filePath("Saved/Thumbnail.png"));
}

} // namespace

void writeThumbnail(app::VulkanViewport* viewport, const std::filesystem::path& projectRoot, QObject* context,
                    const std::function<void()>& written) {
    if (viewport == nullptr || viewport->hasFailed())
        return;
    const QString root = app::toQString(projectRoot);
    const QImage picture = viewport->captureFrame(kSize);
    if (picture.isNull()) {
        log::warn("Editor", "{}: the scene could not be captured", root.toStdString());
        return;
    }
    const auto write = [picture, root] {
        auto done = editor::write(picture, QDir(root));
        if (!done)
            log::warn("Editor", "{}", done.error().message);
        return done;
    };
    inBackground(context, write, [written](const std::expected<void, Error>&) { written(); });
}

} // namespace tarvik::editor
