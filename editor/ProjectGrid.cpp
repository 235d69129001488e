#include "ProjectGrid.hpp"

#include "ProjectCard.hpp"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace tarvik::editor {
namespace {

constexpr int kWidestColumn = 300;

} // namespace

ProjectGrid::ProjectGrid(QWidget* parent) : QListView(parent) {
    setItemDelegate(new ProjectCard(this));
    setFlow(LeftToRight);
    setWrapping(true);
    setResizeMode(Adjust);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(NoFrame);
    // The card that has the focus shows it; the cards lie on the window itself.
    setStyleSheet("QListView { background: transparent; border: none; }");
}

bool ProjectGrid::event(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        divide();
    return QListView::event(event);
}

void ProjectGrid::resizeEvent(QResizeEvent* event) {
    divide();
    QListView::resizeEvent(event);
}

// With room for the scroll bar whether it is there or not: were the cards narrower with it, they would be
// less high, and might need none.
void ProjectGrid::divide() {
    const int room = std::max(1, contentsRect().width() - verticalScrollBar()->sizeHint().width() - 1);
    const int columns = (room + kWidestColumn - 1) / kWidestColumn;
    setGridSize(ProjectCard::cellSize(room / columns, font()));
    verticalScrollBar()->setSingleStep(gridSize().height() / 4);
}

bool ProjectGrid::isOnMenuButton(const QPoint& position) const {
    const QModelIndex index = indexAt(position);
    return index.isValid() && ProjectCard::menuButton(visualRect(index)).contains(position);
}

void ProjectGrid::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && isOnMenuButton(event->pos()))
        Q_EMIT menuRequested(event->globalPosition().toPoint());
}

void ProjectGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!isOnMenuButton(event->pos()))
        QListView::mouseDoubleClickEvent(event);
}

void ProjectGrid::contextMenuEvent(QContextMenuEvent* event) {
    const bool onCard = event->reason() == QContextMenuEvent::Keyboard || indexAt(event->pos()).isValid();
    if (onCard && currentIndex().isValid())
        Q_EMIT menuRequested(event->globalPos());
}

} // namespace tarvik::editor
