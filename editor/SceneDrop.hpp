#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>

namespace tarvik::editor {

enum class DropKind : std::uint8_t { Nothing, Project, Scene };

// What files mean that are dropped on the scene: one folder with a project file in it is that project, one
// scene file that scene, all else nothing.
struct SceneDrop {
    DropKind kind = DropKind::Nothing;
    QString path;
};

// Looks at the disk.
[[nodiscard]] SceneDrop sceneDropOf(const QList<QUrl>& urls);

// The same for a drag, which asks at every move: has the disk looked at once a drag, in the background. Until
// the disk has answered, the files mean nothing.
class DragMemory final {
public:
    [[nodiscard]] SceneDrop dragged(const QList<QUrl>& urls);
    // At the drag's end.
    [[nodiscard]] SceneDrop dropped(const QList<QUrl>& urls) const;

private:
    QList<QUrl> urls_;
    SceneDrop drop_;
    QElapsedTimer sinceAsked_;
    QObject context_; // of the answers
};

} // namespace tarvik::editor
