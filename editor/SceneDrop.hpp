#pragma once

#include <QElapsedTimer>
#include <QList>
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

[[nodiscard]] SceneDrop sceneDropOf(const QList<QUrl>& urls);

// The same for a drag, which asks at every move: looks at the disk, which may be slow, once a drag.
class DragMemory final {
public:
    [[nodiscard]] DropKind kindOf(const QList<QUrl>& urls);

private:
    QList<QUrl> urls_;
    DropKind kind_ = DropKind::Nothing;
    QElapsedTimer sinceAsked_;
};

} // namespace tarvik::editor
