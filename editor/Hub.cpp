#include "Hub.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "ProjectGrid.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>
#include <tarvik/app/Theme.hpp>

#include <QAccessible>
#include <QDesktopServices>
#include <QFileDialog>
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
constexpr int kPictogram = 48;
constexpr int kTextWidth = 420;
constexpr int kSearchWidth = 260;
constexpr int kBesideCards = 28; // their gap and the scroll bar
constexpr QSize kNoRoom(1, 1);   // all of it is for the docks beside another page
constexpr int kShownName = 40;   // letters of a name within a sentence

QString shortName(const RecentProject& project) {
    const QString name = oneLine(QString::fromStdString(project.name));
    return name.size() > kShownName ? name.left(kShownName) + u'…' : name;
}

QPushButton* button(const QString& text, const QString& icon = {}) {
    auto* made = new QPushButton(text);
    made->setMinimumHeight(34);
    if (!icon.isEmpty())
        made->setIcon(app::theme::icon(icon));
    return made;
}

QLabel* pictogram(const QString& icon, int size) {
    auto* label = new QLabel;
    label->setPixmap(app::theme::icon(icon).pixmap(size));
    return label;
}

// In the middle of what the cards leave: a picture, what is the matter, what to do about it.
QWidget* message(const QString& icon, QLabel* title, QLabel* text, const QList<QPushButton*>& buttons) {
    auto* page = new QWidget;
    auto* rows = new QVBoxLayout(page);
    rows->setSpacing(10);
    rows->addStretch(2);
    rows->addWidget(pictogram(icon, kPictogram), 0, Qt::AlignHCenter);
    title->setAlignment(Qt::AlignCenter);
    rows->addWidget(title);
    styleText(*text, TextRole::Muted);
    text->setAlignment(Qt::AlignCenter);
    text->setFixedWidth(kTextWidth);
    // A column does not ask a centred label how high it becomes by wrapping.
    text->setMinimumHeight(std::max(text->heightForWidth(kTextWidth), 2 * text->fontMetrics().lineSpacing()));
    rows->addWidget(text, 0, Qt::AlignHCenter);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 10, 0, 0);
    row->addStretch(1);
    for (QPushButton* each : buttons)
        row->addWidget(each);
    row->addStretch(1);
    rows->addLayout(row);
    rows->addStretch(3);
    return page;
}

} // namespace

Hub::Hub(ProjectInspector::Inspect inspect, QWidget* parent)
    : QWidget(parent),
      inspector_(std::move(inspect)),
      model_(inspector_) {
    found_.setSourceModel(&model_);
    found_.setFilterRole(ProjectModel::SearchRole);
    found_.setFilterCaseSensitivity(Qt::CaseInsensitive);
    connect(&inspector_, &ProjectInspector::inspected, this, &Hub::answer);

    auto* page = new QHBoxLayout(this);
    page->setContentsMargins(40, 36, 16, 16);
    page->setSpacing(40);
    page->addWidget(createGreeting());
    page->addWidget(createRecent(), 1);
    createMenu();
    setMinimumSize(kNoRoom);
}

QWidget* Hub::createGreeting() {
    auto* greeting = new QWidget;
    greeting->setFixedWidth(200);
    auto* title = plainLabel(tr("Tarvik"));
    styleText(*title, TextRole::Heading);

    create_ = button(tr("&New Project…"));
    create_->setProperty("accent", true);
    connect(create_, &QPushButton::clicked, this, [this] { Q_EMIT newRequested(ProjectTemplate::Empty); });
    auto* open = button(tr("&Open Project…"));
    connect(open, &QPushButton::clicked, this, &Hub::openRequested);

    auto* layout = new QVBoxLayout(greeting);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(pictogram("logo", kLogo));
    layout->addWidget(title);
    layout->addSpacing(16);
    layout->addWidget(create_);
    layout->addWidget(open);
    layout->addStretch(1);
    return greeting;
}

QWidget* Hub::createRecent() {
    notice_ = plainLabel({});
    notice_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // The application's style sheet gives every widget its colour, over the palette.
    notice_->setStyleSheet("color: " + logLevelColour(LogLevel::Warn).name());
    notice_->hide();

    auto* heading = new QLabel(tr("Recent projects"));
    styleText(*heading, TextRole::Section);
    search_ = new QLineEdit;
    search_->setPlaceholderText(
        tr("Search (%1)").arg(QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText)));
    search_->setAccessibleName(tr("Search the recent projects"));
    search_->setClearButtonEnabled(true);
    search_->addAction(app::theme::icon("search"), QLineEdit::LeadingPosition);
    search_->setFixedWidth(kSearchWidth);

    grid_ = new ProjectGrid;
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

    caption_ = new QWidget;
    auto* caption = new QHBoxLayout(caption_);
    caption->setContentsMargins(0, 0, kBesideCards, 0);
    caption->addWidget(heading);
    caption->addWidget(search_, 1, Qt::AlignRight);

    pages_ = new QStackedWidget;
    for (QWidget* each :
         {static_cast<QWidget*>(grid_), empty_ = createEmpty(), nothingFound_ = createNothingFound()})
        pages_->addWidget(each);

    auto* recent = new QWidget;
    auto* layout = new QVBoxLayout(recent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(notice_);
    layout->addWidget(caption_);
    layout->addWidget(pages_, 1);
    layout->addWidget(createUndoBar());
    return recent;
}

QWidget* Hub::createEmpty() {
    auto* title = plainLabel(tr("No projects yet"));
    styleText(*title, TextRole::Heading);
    auto* sample = button(tr("Start from the &Sample…"), "sparkle");
    connect(sample, &QPushButton::clicked, this, [this] { Q_EMIT newRequested(ProjectTemplate::Sample); });
    return message("cube", title,
                   plainLabel(tr("Make a new project, or open a folder that holds one. To see first what a "
                                 "game looks like in the editor, start from the sample: it becomes a project "
                                 "of your own.")),
                   {sample});
}

QWidget* Hub::createNothingFound() {
    nothingFoundText_ = plainLabel({});
    auto* title = plainLabel(tr("No project found"));
    styleText(*title, TextRole::Heading);
    auto* clear = button(tr("&Clear Search"), "close");
    connect(clear, &QPushButton::clicked, this, [this] {
        search_->clear();
        grid_->setFocus();
    });
    return message("search", title, nothingFoundText_, {clear});
}

QWidget* Hub::createUndoBar() {
    undoText_ = plainLabel({});
    auto* undo = new QPushButton(tr("&Undo"));
    connect(undo, &QPushButton::clicked, this, &Hub::restore);
    auto* close = new QToolButton;
    close->setIcon(app::theme::icon("close"));
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close the message"));
    undoBar_ = new QWidget;
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
    menu_->addAction(app::theme::icon("folder"), tr("Show in &Folder"), this, &Hub::showFolder);
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
    cancelOpening();
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
    nothingFoundText_->setText(tr("No recent project has “%1” in its name or folder.")
                                   .arg(oneLine(search_->text()).left(kShownName)));
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
        open(model_.project(found_.mapToSource(index).row()));
}

void Hub::open(const RecentProject& project) {
    awaited_ = project;
    model_.setAwaited(project.path);
    inspector_.inspect(project.path, ProjectModel::thumbnailSize());
}

void Hub::cancelOpening() {
    awaited_.reset();
    model_.setAwaited({});
}

void Hub::answer(const std::filesystem::path& folder, const ProjectState& state) {
    if (!awaited_ || awaited_->path != folder)
        return;
    const RecentProject project = *awaited_;
    awaited_.reset();
    model_.setAwaited({});
    if (state.missing && isVisible())
        locate(project);
    else
        Q_EMIT projectChosen(app::toQString(folder));
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
    auto* dialog = new QFileDialog(this, tr("Where Is “%1” Now?").arg(shortName(project)),
                                   app::Preferences::load().effectiveProjectsDirectory());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, project](const QString& folder) { Q_EMIT located(project, folder); });
    dialog->open();
}

void Hub::showFolder() {
    if (const RecentProject* project = current())
        QDesktopServices::openUrl(QUrl::fromLocalFile(app::toQString(project->path)));
}

void Hub::showMenu(const QPoint& globalPosition) {
    const RecentProject* project = current();
    locate_->setVisible(project != nullptr && model_.isMissing(project->path));
    menu_->popup(globalPosition);
}

} // namespace tarvik::editor
