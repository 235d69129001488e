#include "ProjectCard.hpp"

#include "EditorStyle.hpp"
#include "ProjectModel.hpp"

#include <tarvik/app/Theme.hpp>

#include <QFontMetrics>
#include <QListView>
#include <QPainter>
#include <QPainterPath>

namespace tarvik::editor {
namespace {

constexpr int kGap = 16;
constexpr int kPadding = 12;
constexpr int kLineGap = 3;
constexpr int kButton = 26;
constexpr int kIcon = 16;
constexpr double kRadius = 8.0;
const QColor kHovered(0x20242b);
const QColor kEdge(0x2c3038);
const QColor kButtonGround(18, 19, 22, 200);

QFont nameFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

int pictureHeight(int cardWidth) {
    return cardWidth * 10 / 16;
}

QRect cardIn(const QRect& cell) {
    return cell.adjusted(0, 0, -kGap, -kGap);
}

// Cut to the rounded card: nothing of it is square at the top.
void paintPicture(QPainter& painter, const QRect& card, const QPixmap& picture, bool missing) {
    QPainterPath shape;
    shape.addRoundedRect(card, kRadius, kRadius);
    painter.save();
    painter.setClipPath(shape);
    const QRect place(card.topLeft(), QSize(card.width(), pictureHeight(card.width())));
    if (picture.isNull())
        painter.fillRect(place, kHovered);
    painter.setOpacity(missing ? 0.25 : 1.0);
    painter.drawPixmap(place, picture);
    painter.restore();
}

void paintMenuButton(QPainter& painter, const QRect& button) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(kButtonGround);
    painter.drawRoundedRect(button, 5, 5);
    QRect icon(0, 0, kIcon, kIcon);
    icon.moveCenter(button.center());
    app::theme::icon("more").paint(&painter, icon);
}

class Lines final {
public:
    Lines(QPainter& painter, const QRect& box) : painter_(painter), box_(box) {}

    void add(const QString& text, const QFont& font, const QColor& colour, Qt::TextElideMode elide) {
        const QFontMetrics metrics(font);
        painter_.setFont(font);
        painter_.setPen(colour);
        painter_.drawText(box_, Qt::AlignLeft | Qt::AlignTop, metrics.elidedText(text, elide, box_.width()));
        box_.setTop(box_.top() + metrics.height() + kLineGap);
    }

    // Before a line of text.
    void addIcon(const QIcon& icon, const QFont& font) {
        const int lower = (QFontMetrics(font).height() - kIcon) / 2;
        icon.paint(&painter_, QRect(box_.left(), box_.top() + lower, kIcon, kIcon));
        box_.setLeft(box_.left() + kIcon + kPadding / 2);
    }

private:
    QPainter& painter_;
    QRect box_;
};

} // namespace

QSize ProjectCard::cellSize(int width, const QFont& font) {
    const int text = QFontMetrics(nameFont(font)).height() + 2 * (QFontMetrics(font).height() + kLineGap);
    return {width, pictureHeight(width - kGap) + text + 2 * kPadding + kGap};
}

QRect ProjectCard::menuButton(const QRect& cell) {
    const QRect card = cardIn(cell);
    return {card.right() - kButton - 6, card.top() + 8, kButton, kButton};
}

QSize ProjectCard::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return cellSize(qobject_cast<const QListView*>(option.widget)->gridSize().width(), option.font);
}

void ProjectCard::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    const QRect card = cardIn(option.rect);
    const bool missing = index.data(ProjectModel::MissingRole).toBool();
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    const bool current = option.state.testFlag(QStyle::State_Selected);
    const bool focused = current && option.state.testFlag(QStyle::State_HasFocus);
    const QColor muted = logLevelColour(LogLevel::Debug);

    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->setLayoutDirection(option.direction);
    painter->setPen(Qt::NoPen);
    painter->setBrush(hovered ? kHovered : option.palette.color(QPalette::AlternateBase));
    painter->drawRoundedRect(card, kRadius, kRadius);
    paintPicture(*painter, card, index.data(ProjectModel::PictureRole).value<QPixmap>(), missing);

    Lines lines(*painter, card.adjusted(kPadding, pictureHeight(card.width()) + kPadding, -kPadding, 0));
    lines.add(index.data().toString(), nameFont(option.font),
              missing ? muted : option.palette.color(QPalette::Text), Qt::ElideRight);
    lines.add(index.data(ProjectModel::FolderRole).toString(), option.font, muted, Qt::ElideMiddle);
    if (missing) {
        lines.addIcon(app::theme::icon("warning"), option.font);
        lines.add(tr("Folder not found"), option.font, logLevelColour(LogLevel::Warn), Qt::ElideRight);
    } else {
        lines.add(index.data(ProjectModel::OpenedRole).toString(), option.font, muted, Qt::ElideRight);
    }

    const double width = current ? 2.0 : 1.0;
    const QColor accent = option.palette.color(focused ? QPalette::Link : QPalette::Highlight);
    painter->setPen(QPen(current ? accent : kEdge, width));
    painter->setBrush(Qt::NoBrush);
    const double half = width / 2;
    painter->drawRoundedRect(QRectF(card).adjusted(half, half, -half, -half), kRadius, kRadius);
    if (hovered || current)
        paintMenuButton(*painter, menuButton(option.rect));
    painter->restore();
}

} // namespace tarvik::editor
