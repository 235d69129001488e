#pragma once

#include <tarvik/scene/Scene.hpp>

#include <QWidget>

#include <memory>

namespace tarvik::editor {

class SceneModel;

// The scene's entities, each with its kind, and a filter by name.
class SceneTree final : public QWidget {
    Q_OBJECT

public:
    explicit SceneTree(QWidget* parent = nullptr);

    // Null shows nothing.
    void setScene(std::shared_ptr<const Scene> scene);

private:
    SceneModel* model_;
};

} // namespace tarvik::editor
