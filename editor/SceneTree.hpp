#pragma once

#include <tarvik/scene/Scene.hpp>

#include <QWidget>

#include <cstddef>
#include <memory>
#include <optional>

class QSortFilterProxyModel;
class QTreeView;

namespace tarvik::editor {

class SceneModel;

// The scene's entities, each with its kind, and a filter by name.
class SceneTree final : public QWidget {
    Q_OBJECT

public:
    explicit SceneTree(QWidget* parent = nullptr);

    // Null shows nothing. Nothing is chosen any more, without a signal.
    void setScene(std::shared_ptr<const Scene> scene);
    // Without a signal. What the filter hides stays chosen, and shows as such when the filter goes.
    void choose(std::optional<std::size_t> entity);

Q_SIGNALS:
    void entityChosen(std::optional<std::size_t> entity); // by the user
    void entityActivated();                               // the chosen one: a double click, or Enter

private:
    void showChosen();
    void takeChosen();

    SceneModel* model_;
    QSortFilterProxyModel* filtered_;
    QTreeView* view_;
    std::optional<std::size_t> chosen_;
    bool showing_ = false; // the list's selection changes, but not by the user
};

} // namespace tarvik::editor
