#include "MovedBuildTree.hpp"

#include <tarvik/core/Log.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tarvik::editor {
namespace {

// Where the tree lay when it was configured, as its cache says; empty when it does not say.
QString placeIn(const QString& cacheFile) {
    QFile file(cacheFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (const QByteArray key = "CMAKE_CACHEFILE_DIR:INTERNAL="; line.startsWith(key))
            return QFile::decodeName(line.mid(key.size()));
    }
    return {};
}

} // namespace

void removeMovedBuildTree(const QString& projectRoot) {
    QDir tree(QDir(projectRoot).filePath("Saved/ScriptBuild/obj"));
    const QString place = placeIn(tree.filePath("CMakeCache.txt"));
    if (place.isEmpty() || QFileInfo(place).canonicalFilePath() == tree.canonicalPath())
        return;
    log::info("Script", "the project was at {} before: building anew", place.toStdString());
    if (!tree.removeRecursively())
        log::warn("Script", "cannot remove {}", tree.path().toStdString());
}

} // namespace tarvik::editor
