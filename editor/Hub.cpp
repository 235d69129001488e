#include "Hub.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "FileDialogs.hpp"
#include "ProjectGrid.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>
#include <tarvik/app/Theme.hpp>

#include <QAccessible>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace tarvik::editor {
namespace {

constexpr int kLogo = 40;
constexpr int kLogoInset = 4; // how far from the edge its drawing begins
constexpr int kPictogram = 48;
constexpr int kTextWidth = 420;
constexpr int kSearchWidth = 260;
constexpr int kBesideCards = 28; // their gap and the scroll bar
constexpr QSize kNoRoom(1, 1);   // all of it is for the docks beside another page
constexpr int kShownName = 40;   // letters of a name within a sentence

QString shortName(const RecentProject& project) {
    return oneLine(QString::fromStdString(project.name), kShownName);
}

QPushButton* button(const QString& text, QWidget* parent, const QString& icon = {}) {
    auto* made = new QPushButton(text, parent);
    made->setMinimumHeight(34);
    if (!icon.isEmpty())
        made->setIcon(app::theme::icon(icon));
    return made;
}

QLabel* pictogram(const QString& icon, int size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setPixmap(app::theme::icon(icon).pixmap(size));
    return label;
}

// In the middle of what the cards leave: a picture, what is the matter, what to do about it.
void arrangeMessage(QWidget* page, const QString& icon, const QString& title, QLabel* text,
                    QPushButton* remedy) {
    auto* rows = new QVBoxLayout(page);
    rows->setSpacing(10);
    rows->addStretch(2);
    rows->addWidget(pictogram(icon, kPictogram, page), 0, Qt::AlignHCenter);
    QLabel* heading = plainLabel(title, page);
    styleText(*heading, TextRole::Heading);
    heading->setAlignment(Qt::AlignCenter);
    rows->addWidget(heading);
    styleText(*text, TextRole::Muted);
    text->setAlignment(Qt::AlignCenter);
    text->setFixedWidth(kTextWidth);
    // A column does not ask a centred label how high it becomes by wrapping.
    text->setMinimumHeight(std::max(text->heightForWidth(kTextWidth), 2 * text->fontMetrics().lineSpacing()));
    rows->addWidget(text, 0, Qt::AlignHCenter);
    rows->addSpacing(10);
    rows->addWidget(remedy, 0, Qt::AlignHCenter);
    rows->addStretch(3);
}

} // namespace

Hub::Hub(QWidget* parent) : QWidget(parent), model_(inspector_) {
    found_.setSourceModel(&model_);
    found_.setFilterRole(ProjectModel::SearchRole);
    found_.setFilterCaseSensitivity(Qt::CaseInsensitive);

    auto* page = new QHBoxLayout(this);
    page->setContentsMargins(40, 36, 16, 16);
    page->setSpacing(40);
    page->addWidget(createGreeting());
    page->addWidget(createRecent(), 1);
    createMenu();
    setMinimumSize(kNoRoom);
}

QWidget* Hub::createGreeting() {
    auto* greeting = new QWidget(this);
    greeting->setFixedWidth(200);
    QLabel* logo = pictogram("logo", kLogo, greeting);
    // In line with the title below.
    const QPixmap framed = logo->pixmap();
    const int inset = qRound(kLogoInset * framed.devicePixelRatio());
    logo->setPixmap(framed.copy(framed.rect().adjusted(inset, 0, 0, 0)));
    auto* title = plainLabel(tr("Tarvik"), greeting);
    styleText(*title, TextRole::Heading);

    create_ = button(tr("&New Project…"), greeting);
    create_->setProperty("accent", true);
    connect(create_, &QPushButton::clicked, this, [this] { Q_EMIT newRequested(ProjectTemplate::Empty); });
    auto* open = button(tr("&Open Project…"), greeting);
    connect(open, &QPushButton::clicked, this, &Hub::openRequested);

    auto* layout = new QVBoxLayout(greeting);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(logo);
    layout->addWidget(title);
    layout->addSpacing(16);
    layout->addWidget(create_);
    layout->addWidget(open);
    layout->addStretch(1);
    return greeting;
}

QWidget* Hub::createRecent() {
    auto* recent = new QWidget(this);
    notice_ = plainLabel({}, recent);
    notice_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // The application's style sheet gives every widget its colour, over the palette.
    notice_->setStyleSheet("color: " + logLevelColour(LogLevel::Warn).name());
    notice_->hide();

    caption_ = new QWidget(recent);
    auto* heading = new QLabel(tr("Recent projects"), caption_);
    styleText(*heading, TextRole::Section);
    search_ = new QLineEdit(caption_);
    search_->setPlaceholderText(
        tr("Search (%1)").arg(QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText)));
    search_->setAccessibleName(tr("Search the recent projects"));
    search_->setClearButtonEnabled(true);
    search_->addAction(app::theme::icon("search"), QLineEdit::LeadingPosition);
    search_->setFixedWidth(kSearchWidth);

    pages_ = new QStackedWidget(recent);
    grid_ = new ProjectGrid(pages_);
    grid_->setAccessibleName(tr("Recent projects"));
    grid_->setModel(&found_);
    connect(grid_, &QListView::activated, this, &Hub::choose);
    connect(grid_, &ProjectGrid::menuRequested, this, &Hub::showMenu);

    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        found_.setFilterFixedString(text.trimmed());
        select(0);
        showPage();
    });
    connect(search_, &QLineEdit::returnPressed, this, [this] { choose(grid_->currentIndex()); });
    const auto onKey = [](const QKeySequence& key, QWidget* where, const auto& effect) {
        QObject::connect(
            new QShortcut(key, where, nullptr, nullptr,
                          where->inherits("QLineEdit") ? Qt::WidgetShortcut : Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, where, effect);
    };
    onKey(Qt::Key_Down, search_, [this] { grid_->setFocus(); });
    onKey(Qt::Key_Escape, search_, [this] { search_->clear(); });
    onKey(QKeySequence::Find, this, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    onKey(QKeySequence::Undo, this, [this] { restore(); });

    auto* caption = new QHBoxLayout(caption_);
    caption->setContentsMargins(0, 0, kBesideCards, 0);
    caption->addWidget(heading);
    caption->addWidget(search_, 1, Qt::AlignRight);

    for (QWidget* each :
         {static_cast<QWidget*>(grid_), empty_ = createEmpty(), nothingFound_ = createNothingFound()})
        pages_->addWidget(each);

    auto* layout = new QVBoxLayout(recent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(notice_);
    layout->addWidget(caption_);
    layout->addWidget(pages_, 1);
    layout->addWidget(createUndoBar(recent));
    return recent;
}

QWidget* Hub::createEmpty() {
    auto* page = new QWidget(pages_);
    auto* sample = button(tr("Start from the &Sample…"), page, "sparkle");
    connect(sample, &QPushButton::clicked, this, [this] { Q_EMIT newRequested(ProjectTemplate::Sample); });
    arrangeMessage(page, "cube", tr("No projects yet"),
                   plainLabel(tr("Make a new project, or open a folder that holds one. To see first what a "
                                 "game looks like in the editor, start from the sample: it becomes a project "
                                 "of your own."),
                              page),
                   sample);
    return page;
}

QWidget* Hub::createNothingFound() {
    auto* page = new QWidget(pages_);
    nothingFoundText_ = plainLabel({}, page);
    auto* clear = button(tr("&Clear Search"), page, "close");
    connect(clear, &QPushButton::clicked, this, [this] {
        search_->clear();
        grid_->setFocus();
    });
    arrangeMessage(page, "search", tr("No project found"), nothingFoundText_, clear);
    return page;
}

QWidget* Hub::createUndoBar(QWidget* parent) {
    undoBar_ = new QWidget(parent);
    undoText_ = plainLabel({}, undoBar_);
    auto* undo = new QPushButton(tr("&Undo"), undoBar_);
    connect(undo, &QPushButton::clicked, this, &Hub::restore);
    auto* close = new QToolButton(undoBar_);
    close->setIcon(app::theme::icon("close"));
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close the message"));
    connect(close, &QToolButton::clicked, undoBar_, &QWidget::hide);
    auto* row = new QHBoxLayout(undoBar_);
    row->setContentsMargins(0, 0, kBesideCards, 0);
    row->addWidget(undoText_, 1);
    row->addWidget(undo);
    row->addWidget(close);
    undoBar_->hide();
    return undoBar_;
}

void Hub::createMenu() {
    menu_ = new QMenu(this);
    menu_->addAction(tr("&Open"), this, [this] { choose(grid_->currentIndex()); });
    locate_ = menu_->addAction(app::theme::icon("search"), tr("&Locate…"), this, [this] {
        if (const RecentProject* project = current())
            locate(*project);
    });
    show_ = menu_->addAction(app::theme::icon("folder"), tr("Show in &Folder"), this, &Hub::showFolder);
    menu_->addSeparator();
    auto* remove = new QAction(app::theme::icon("trash"), tr("&Remove from List"), grid_);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    connect(remove, &QAction::triggered, this, &Hub::remove);
    grid_->addAction(remove);
    menu_->addAction(remove);
}

void Hub::setProjects(std::span<const RecentProject> projects) {
    const int row = isVisible() ? grid_->currentIndex().row() : 0;
    model_.setProjects(projects);
    select(row);
    showPage();
}

void Hub::setNotice(const QString& text) {
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty());
}

bool Hub::isMissing(const std::filesystem::path& folder) const {
    return model_.isMissing(folder);
}

void Hub::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (event->spontaneous()) // the window comes back, with what was typed in it
        return;
    setMinimumSize(0, 0); // as the layout needs
    if (pages_->currentWidget() == grid_)
        grid_->setFocus();
    else
        create_->setFocus();
}

void Hub::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    undoBar_->hide();
    search_->clear();
    setMinimumSize(kNoRoom);
}

void Hub::showPage() {
    const bool any = model_.rowCount() > 0;
    caption_->setVisible(any);
    if (found_.rowCount() > 0) {
        pages_->setCurrentWidget(grid_);
        return;
    }
    nothingFoundText_->setText(
        tr("No recent project has “%1” in its name or folder.").arg(oneLine(search_->text(), kShownName)));
    pages_->setCurrentWidget(any ? nothingFound_ : empty_);
}

void Hub::select(int row) {
    const int last = found_.rowCount() - 1;
    grid_->setCurrentIndex(last < 0 ? QModelIndex() : found_.index(std::clamp(row, 0, last), 0));
}

const RecentProject* Hub::current() const {
    const QModelIndex index = grid_->currentIndex();
    return index.isValid() ? &model_.project(found_.mapToSource(index).row()) : nullptr;
}

void Hub::choose(const QModelIndex& index) {
    if (index.isValid())
        Q_EMIT projectChosen(model_.project(found_.mapToSource(index).row()));
}

void Hub::remove() {
    if (const RecentProject* project = current()) {
        removed_ = *project;
        undoText_->setText(tr("“%1” is off the list. Its folder is untouched.").arg(shortName(*project)));
        undoBar_->show();
        QAccessibleEvent alert(undoText_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
        Q_EMIT removalRequested(*removed_);
    }
}

void Hub::restore() {
    if (!removed_)
        return;
    const RecentProject project = *removed_;
    removed_.reset();
    undoBar_->hide();
    Q_EMIT restoreRequested(project);
    for (int row = 0; row < found_.rowCount(); ++row) {
        if (model_.project(found_.mapToSource(found_.index(row, 0)).row()).path == project.path)
            select(row);
    }
    grid_->setFocus();
}

void Hub::locate(const RecentProject& project) {
    askForFolder(this, tr("Where Is “%1” Now?").arg(shortName(project)),
                 app::Preferences::load().effectiveProjectsDirectory(),
                 [this, project](const QString& folder) { Q_EMIT located(project, folder); });
}

void Hub::showFolder() {
    if (const RecentProject* project = current())
        QDesktopServices::openUrl(QUrl::fromLocalFile(app::toQString(project->path)));
}

void Hub::showMenu(const QPoint& globalPosition) {
    const RecentProject* project = current();
    const bool missing = project != nullptr && model_.isMissing(project->path);
    locate_->setVisible(missing);
    show_->setEnabled(!missing);
    menu_->popup(globalPosition);
}

} // namespace tarvik::editor
