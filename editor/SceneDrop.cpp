#include "SceneDrop.hpp"

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

DropKind DragMemory::kindOf(const QList<QUrl>& urls) {
    // A drag asks all the time; after a pause it is another one.
    constexpr qint64 kPauseMs = 2000;
    const bool sameDrag = sinceAsked_.isValid() && sinceAsked_.elapsed() < kPauseMs && urls == urls_;
    sinceAsked_.start();
    if (!sameDrag) {
        urls_ = urls;
        kind_ = sceneDropOf(urls).kind;
    }
    return kind_;
}

} // namespace tarvik::editor
