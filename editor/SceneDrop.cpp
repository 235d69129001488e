#include "SceneDrop.hpp"

#include "Background.hpp"

#include <tarvik/project/Project.hpp>

#include <QFileInfo>

namespace tarvik::editor {

SceneDrop sceneDropOf(const QList<QUrl>& urls) {
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return {};
    const QString path = urls.front().toLocalFile();
    const QFileInfo file(path);
    if (file.isFile() && path.endsWith(".lscene"))
        return {DropKind::Scene, path};
    const QString projectFile = QString::fromUtf8(Project::kFileName.data(), Project::kFileName.size());
    if (file.isDir() && QFileInfo(path + '/' + projectFile).isFile())
        return {DropKind::Project, path};
    return {};
}

SceneDrop DragMemory::dragged(const QList<QUrl>& urls) {
    // A drag asks all the time; after a pause it is another one.
    constexpr qint64 kPauseMs = 2000;
    const bool sameDrag = sinceAsked_.isValid() && sinceAsked_.elapsed() < kPauseMs && urls == urls_;
    sinceAsked_.start();
    if (!sameDrag) {
        // Of files that are the same, what is known holds meanwhile: who rests over the scene and then lets
        // go with a last move must not find the drop refused.
        if (urls != urls_)
            drop_ = {};
        urls_ = urls;
        const auto take = [this, urls](const SceneDrop& drop) {
            if (urls == urls_)
                drop_ = drop;
        };
        inBackground(
            &context_, [urls] { return sceneDropOf(urls); }, take);
    }
    return drop_;
}

SceneDrop DragMemory::dropped(const QList<QUrl>& urls) const {
    return urls == urls_ ? drop_ : SceneDrop();
}

} // namespace tarvik::editor
