#pragma once

#include <tarvik/scene/Scene.hpp>

#include <QScrollArea>

#include <cstddef>
#include <memory>
#include <optional>

namespace tarvik::editor {

// All that the scene says of one entity, to read and to copy.
class Inspector final : public QScrollArea {
    Q_OBJECT

public:
    explicit Inspector(QWidget* parent = nullptr);

    // Null shows nothing. No entity is shown any more.
    void setScene(std::shared_ptr<const Scene> scene);
    void inspect(std::optional<std::size_t> entity);

private:
    void showHint(const QString& text);

    std::shared_ptr<const Scene> scene_;
};

} // namespace tarvik::editor
