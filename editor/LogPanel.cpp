#include "LogPanel.hpp"

#include "LogInbox.hpp"
#include "LogModel.hpp"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPersistentModelIndex>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace tarvik::editor {
namespace {

constexpr int kFetchIntervalMs = 50;

} // namespace

LogPanel::LogPanel(QWidget* parent)
    : QWidget(parent),
      model_(new LogModel(this)),
      filter_(new LogFilter(*model_, this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    layout->addWidget(createTools());
    createTable();
    layout->addWidget(table_);

    fetchTimer_.setInterval(kFetchIntervalMs);
    connect(&fetchTimer_, &QTimer::timeout, this, &LogPanel::fetch);
}

LogPanel::~LogPanel() {
    detach();
}

QWidget* LogPanel::createTools() {
    auto* tools = new QWidget(this);
    auto* layout = new QHBoxLayout(tools);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* level = new QComboBox(tools);
    level->addItem(tr("All levels"), static_cast<int>(LogLevel::Debug));
    level->addItem(tr("Info and above"), static_cast<int>(LogLevel::Info));
    level->addItem(tr("Warnings and errors"), static_cast<int>(LogLevel::Warn));
    level->addItem(tr("Errors"), static_cast<int>(LogLevel::Error));
    level->setAccessibleName(tr("Least level shown"));
    level->setAccessibleDescription(
        level->accessibleName()); // on Linux a combo box's name is its current text
    connect(level, &QComboBox::currentIndexChanged, this,
            [this, level] { filter_->setLeastLevel(static_cast<LogLevel>(level->currentData().toInt())); });
    layout->addWidget(level);

    auto* text = new QLineEdit(tools);
    text->setPlaceholderText(tr("Filter by text"));
    text->setAccessibleName(tr("Filter log by text"));
    text->setClearButtonEnabled(true);
    connect(text, &QLineEdit::textChanged, filter_, &LogFilter::setText);
    layout->addWidget(text, 1);

    follow_ = new QCheckBox(tr("Follo&w"), tools);
    follow_->setToolTip(tr("Keep the newest line in view"));
    follow_->setChecked(true);
    connect(follow_, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            table_->scrollToBottom();
    });
    layout->addWidget(follow_);

    auto* copy = new QPushButton(tr("&Copy"), tools);
    copy->setToolTip(tr("Copy the selected lines, or all lines shown when none is selected"));
    connect(copy, &QPushButton::clicked, this, &LogPanel::copySelection);
    layout->addWidget(copy);

    auto* clearButton = new QPushButton(tr("C&lear"), tools);
    connect(clearButton, &QPushButton::clicked, this, &LogPanel::clear);
    layout->addWidget(clearButton);
    return tools;
}

void LogPanel::createTable() {
    table_ = new QTableView(this);
    table_->setModel(filter_);
    table_->setAccessibleName(tr("Log"));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table_->setTabKeyNavigation(false); // Tab leaves the table
    table_->setShowGrid(false);
    table_->setWordWrap(false);
    table_->setFrameShape(QFrame::NoFrame);
    table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

    // Rows of one fixed height: the view never measures their content.
    const QFontMetrics metrics(table_->font());
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setDefaultSectionSize(metrics.height() + 4);

    QHeaderView* header = table_->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    table_->setColumnWidth(LogModel::Time, metrics.horizontalAdvance("00:00:00.000") + 24);
    table_->setColumnWidth(LogModel::Level, metrics.horizontalAdvance("warning") + 24);
    table_->setColumnWidth(LogModel::Category, metrics.horizontalAdvance("Renderer12") + 24);

    auto* copy = new QAction(tr("Copy"), table_);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &LogPanel::copySelection);
    auto* clearAction = new QAction(tr("Clear"), table_);
    connect(clearAction, &QAction::triggered, this, &LogPanel::clear);
    table_->addActions({copy, clearAction});
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);

    connect(table_->verticalScrollBar(), &QScrollBar::actionTriggered, this, &LogPanel::followIfAtEnd);
}

void LogPanel::attach(app::LogBridge& bridge) {
    detach();
    bridge_ = &bridge;
    inbox_ = std::make_shared<LogInbox>();
    for (const app::UiLogEntry& entry : bridge.history())
        inbox_->put(entry);
    // The bridge is its own context: the connection ends with it and never while another thread logs. The
    // panel may go at any time; the inbox it leaves behind is closed.
    connect(
        &bridge, &app::LogBridge::messageLogged, &bridge,
        [inbox = inbox_](const app::UiLogEntry& entry) { inbox->put(entry); }, Qt::DirectConnection);
}

void LogPanel::detach() {
    if (!inbox_)
        return;
    model_->append(inbox_->takeAll());
    inbox_->close();
    inbox_.reset();
    bridge_.clear();
}

void LogPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    fetch();
    fetchTimer_.start();
}

void LogPanel::hideEvent(QHideEvent* event) {
    fetchTimer_.stop();
    QWidget::hideEvent(event);
}

void LogPanel::fetch() {
    if (!inbox_)
        return;
    std::deque<app::UiLogEntry> batch = inbox_->takeAll();
    if (batch.empty())
        return;
    // Old lines that leave the buffer must not move what is being read.
    const QPersistentModelIndex top = table_->indexAt({0, 0});
    model_->append(std::move(batch));
    if (follow_->isChecked())
        table_->scrollToBottom();
    else if (top.isValid())
        table_->scrollTo(top, QAbstractItemView::PositionAtTop);
}

void LogPanel::clear() {
    if (inbox_)
        static_cast<void>(inbox_->takeAll());
    if (bridge_)
        bridge_->clearHistory();
    model_->clear();
}

void LogPanel::copySelection() {
    QModelIndexList rows = table_->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        for (int row = 0; row < filter_->rowCount(); ++row)
            rows.append(filter_->index(row, 0));
    }
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList lines;
    for (const QModelIndex& row : rows) {
        const app::UiLogEntry& entry = filter_->line(row);
        lines += QString("%1 %2 [%3] %4")
                     .arg(entry.time.toString("HH:mm:ss.zzz"), levelName(entry.level), entry.category,
                          entry.message);
    }
    QGuiApplication::clipboard()->setText(lines.join('\n'));
}

void LogPanel::followIfAtEnd() {
    const QScrollBar* bar = table_->verticalScrollBar();
    follow_->setChecked(bar->sliderPosition() == bar->maximum());
}

} // namespace tarvik::editor
