#pragma once

#include <QStyledItemDelegate>

namespace tarvik::editor {

// Paints a project as a card: its picture, and below it name, folder, and when it was last opened or what is
// wrong with it.
class ProjectCard final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // Of a card with its gap, in a column so wide.
    [[nodiscard]] static QSize cellSize(int width, const QFont& font);
    // Of the button for the card's menu, in the card's cell.
    [[nodiscard]] static QRect menuButton(const QRect& cell);

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace tarvik::editor
