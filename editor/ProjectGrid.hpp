#pragma once

#include <QListView>

namespace tarvik::editor {

// Project cards in as many columns as the width has room for, which share it evenly.
class ProjectGrid final : public QListView {
    Q_OBJECT

public:
    explicit ProjectGrid(QWidget* parent = nullptr);

Q_SIGNALS:
    // For the current card, by its button, the right mouse button or the menu key.
    void menuRequested(const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void divide();
    [[nodiscard]] bool isOnMenuButton(const QPoint& position) const;
};

} // namespace tarvik::editor
