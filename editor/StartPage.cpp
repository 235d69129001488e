#include "StartPage.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <tarvik/app/Paths.hpp>

#include <QAction>
#include <QDateTime>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace tarvik::editor {
namespace {

enum Role : int { FolderRole = Qt::UserRole, OpenedRole, MissingRole };

constexpr int kPadding = 10;

// A project in two lines: its name, and its folder; when it was last opened, or that it is gone, to the
// right.
class ProjectDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {200, 2 * option.fontMetrics.height() + 2 * kPadding + 2};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& item, const QModelIndex& index) const override {
        QStyleOptionViewItem option = item;
        initStyleOption(&option, index);
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        const bool missing = index.data(MissingRole).toBool();
        const auto group = missing && !selected ? QPalette::Disabled : QPalette::Active;
        const QColor text =
            option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
        const QColor muted = selected ? text : option.palette.color(group, QPalette::PlaceholderText);

        const QString name = option.text;
        option.text.clear();
        option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);

        const QRect box = option.rect.adjusted(kPadding, kPadding, -kPadding, -kPadding);
        painter->save();
        painter->setFont(option.font);
        painter->setPen(missing && !selected ? logLevelColour(LogLevel::Warn) : muted);
        const QString side = missing ? QObject::tr("missing") : index.data(OpenedRole).toString();
        painter->drawText(box, Qt::AlignRight | Qt::AlignTop, side);

        QFont nameFont = option.font;
        nameFont.setWeight(QFont::DemiBold);
        const QFontMetrics nameMetrics(nameFont);
        const int nameWidth = box.width() - option.fontMetrics.horizontalAdvance(side) - 2 * kPadding;
        painter->setFont(nameFont);
        painter->setPen(text);
        painter->drawText(box, Qt::AlignLeft | Qt::AlignTop,
                          nameMetrics.elidedText(name, Qt::ElideRight, nameWidth));

        painter->setFont(option.font);
        painter->setPen(muted);
        painter->drawText(box, Qt::AlignLeft | Qt::AlignBottom,
                          option.fontMetrics.elidedText(oneLine(index.data(FolderRole).toString()),
                                                        Qt::ElideMiddle, box.width()));
        painter->restore();
    }
};

} // namespace

StartPage::StartPage(QWidget* parent) : QWidget(parent) {
    notice_ = plainLabel({});
    notice_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    colourText(*notice_, LogLevel::Warn);
    notice_->hide();

    auto* block = new QWidget(this);
    block->setMaximumWidth(980);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(48);
    columns->addWidget(createGreeting(block), 0, Qt::AlignTop);
    columns->addWidget(createRecent(block), 1);

    auto* rows = new QVBoxLayout(block);
    rows->setSpacing(24);
    rows->addWidget(notice_);
    rows->addLayout(columns, 1);

    auto* page = new QHBoxLayout(this);
    page->setContentsMargins(48, 56, 48, 48);
    page->addStretch(1);
    page->addWidget(block, 20);
    page->addStretch(1);
}

QWidget* StartPage::createGreeting(QWidget* parent) {
    auto* greeting = new QWidget(parent);
    greeting->setFixedWidth(220);
    auto* title = plainLabel(tr("Tarvik"));
    styleText(*title, TextRole::Heading);
    auto* subtitle = plainLabel(tr("Open a project to see its scene."));
    styleText(*subtitle, TextRole::Muted);

    auto* create = new QPushButton(tr("&New Project…"), greeting);
    connect(create, &QPushButton::clicked, this, &StartPage::newRequested);
    auto* open = new QPushButton(tr("&Open Project…"), greeting);
    connect(open, &QPushButton::clicked, this, &StartPage::openRequested);
    for (QPushButton* button : {create, open})
        button->setMinimumHeight(34);

    auto* layout = new QVBoxLayout(greeting);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title);
    layout->addWidget(subtitle);
    layout->addSpacing(16);
    layout->addWidget(create);
    layout->addWidget(open);
    return greeting;
}

QWidget* StartPage::createRecent(QWidget* parent) {
    auto* recent = new QWidget(parent);
    auto* heading = plainLabel(tr("Recent projects"));
    styleText(*heading, TextRole::Section);
    empty_ = plainLabel(tr("No project was opened yet."));
    styleText(*empty_, TextRole::Muted);

    list_ = new QListWidget(recent);
    list_->setAccessibleName(tr("Recent projects"));
    list_->setItemDelegate(new ProjectDelegate(list_));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(list_, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem* item) { Q_EMIT projectChosen(item->data(FolderRole).toString()); });

    auto* remove = new QAction(tr("Remove from List"), list_);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    connect(remove, &QAction::triggered, this, [this] {
        if (const QListWidgetItem* item = list_->currentItem())
            Q_EMIT removalRequested(item->data(FolderRole).toString());
    });
    list_->addAction(remove);
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* layout = new QVBoxLayout(recent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(heading);
    layout->addWidget(empty_);
    layout->addWidget(list_, 1);
    return recent;
}

void StartPage::setProjects(std::span<const RecentProject> projects) {
    list_->clear();
    for (const RecentProject& project : projects) {
        auto* item = new QListWidgetItem(oneLine(QString::fromStdString(project.name)), list_);
        const QString folder = app::toQString(project.path);
        item->setData(FolderRole, folder);
        item->setData(MissingRole, project.missing);
        const QDate opened = QDateTime::fromSecsSinceEpoch(project.lastOpenedUnix).date();
        item->setData(OpenedRole, QLocale().toString(opened, QLocale::ShortFormat));
        item->setData(Qt::AccessibleTextRole, project.missing
                                                  ? tr("%1, missing, %2").arg(item->text(), folder)
                                                  : tr("%1, %2").arg(item->text(), folder));
    }
    if (!projects.empty())
        list_->setCurrentRow(0);
    list_->setVisible(!projects.empty());
    empty_->setVisible(projects.empty());
}

void StartPage::setNotice(const QString& text) {
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty());
}

} // namespace tarvik::editor
