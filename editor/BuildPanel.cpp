#include "BuildPanel.hpp"

#include "BuildOutputView.hpp"
#include "DiagnosticModel.hpp"
#include "DiagnosticText.hpp"
#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "ProjectBuild.hpp"

#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvik::editor {
namespace {

using Severity = app::BuildDiagnostic::Severity;

constexpr int kElapsedIntervalMs = 200;

QString secondsText(std::chrono::milliseconds time) {
    return BuildPanel::tr("%1 s").arg(static_cast<double>(time.count()) / 1000.0, 0, 'f', 1);
}

QString countText(int errors, int warnings) {
    QStringList parts;
    if (errors > 0)
        parts += errors == 1 ? BuildPanel::tr("1 error") : BuildPanel::tr("%1 errors").arg(errors);
    if (warnings > 0)
        parts += warnings == 1 ? BuildPanel::tr("1 warning") : BuildPanel::tr("%1 warnings").arg(warnings);
    return parts.join(", ");
}

} // namespace

BuildPanel::BuildPanel(QWidget* parent) : QWidget(parent), model_(new DiagnosticModel(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    layout->addWidget(createTools());

    notice_ = plainLabel({}, this);
    colourText(*notice_, LogLevel::Warn);
    notice_->setMinimumWidth(1); // a long path must not widen the window
    notice_->hide();
    layout->addWidget(notice_);

    layout->addWidget(createTabs(), 1);

    elapsedTimer_.setInterval(kElapsedIntervalMs);
    connect(&elapsedTimer_, &QTimer::timeout, this, &BuildPanel::showElapsed);
    watch(nullptr);
}

QWidget* BuildPanel::createTools() {
    auto* tools = new QWidget(this);
    auto* layout = new QHBoxLayout(tools);
    layout->setContentsMargins(0, 0, 0, 0);

    state_ = plainLabel({}, tools);
    state_->setMinimumWidth(1); // as with the notice
    layout->addWidget(state_, 1);

    progress_ = new QProgressBar(tools);
    progress_->setRange(0, 0); // nobody knows how much there is to do
    progress_->setTextVisible(false);
    progress_->setFixedSize(8 * fontMetrics().height(), fontMetrics().height() / 2);
    progress_->setAccessibleName(tr("The build is running"));
    layout->addWidget(progress_);

    start_ = new QPushButton(tr("B&uild"), tools);
    start_->setToolTip(tr("Build the project's behaviours"));
    connect(start_, &QPushButton::clicked, this, [this] {
        if (build_)
            build_->build();
    });
    layout->addWidget(start_);

    cancel_ = new QPushButton(tr("Ca&ncel"), tools);
    cancel_->setToolTip(tr("End the build that is running"));
    connect(cancel_, &QPushButton::clicked, this, [this] {
        if (build_)
            build_->cancel();
    });
    layout->addWidget(cancel_);
    return tools;
}

QWidget* BuildPanel::createTabs() {
    tabs_ = new QTabWidget(this);
    tabs_->setDocumentMode(true);
    table_ = createTable();
    tabs_->addTab(table_, {});
    output_ = new BuildOutputView(tabs_);
    output_->setAccessibleName(tr("Output of the build"));
    tabs_->addTab(output_, tr("&Output"));
    return tabs_;
}

QTableView* BuildPanel::createTable() {
    auto* table = new QTableView(tabs_);
    table->setModel(model_);
    table->setAccessibleName(tr("Problems"));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setTabKeyNavigation(false); // Tab leaves the table
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

    // Rows of one fixed height: the view never measures their content.
    const QFontMetrics metrics(table->font());
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(metrics.height() + 4);

    QHeaderView* header = table->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    table->setColumnWidth(DiagnosticModel::Severity, metrics.horizontalAdvance("Severity") + 24);
    table->setColumnWidth(DiagnosticModel::Place, metrics.horizontalAdvance("PlayerMovement.cpp:1234") + 24);
    connect(table, &QTableView::activated, this, &BuildPanel::openFile);

    auto* open = new QAction(tr("Open File"), table);
    connect(open, &QAction::triggered, this, [this] { openFile(table_->currentIndex()); });
    auto* copy = new QAction(tr("Copy"), table);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &BuildPanel::copySelection);
    table->addActions({open, copy});
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    return table;
}

void BuildPanel::watch(ProjectBuild* build) {
    if (build_)
        build_->disconnect(this);
    build_ = build;
    setResult({});
    if (build == nullptr) {
        setBusy(false);
        setState(tr("No project is open"));
        return;
    }
    connect(build, &ProjectBuild::started, this, &BuildPanel::showStarted);
    connect(build, &ProjectBuild::finished, this, &BuildPanel::showFinished);
    connect(build, &ProjectBuild::cancelled, this, &BuildPanel::showCancelled);
    connect(build, &QObject::destroyed, this, [this] { watch(nullptr); });
    setState(tr("Nothing built yet"));
    setBusy(build->busy());
}

void BuildPanel::showStarted() {
    setResult({});
    setBusy(true);
}

void BuildPanel::showFinished(bool ok, const QString& output) {
    setBusy(false);
    setResult(output);
    const int errors = model_->count(Severity::Error);
    const QString counts = countText(errors, model_->count(Severity::Warning));
    if (ok) {
        const QString done = tr("Built in %1").arg(secondsText(build_->elapsed()));
        setState(counts.isEmpty() ? done : tr("%1: %2").arg(done, counts));
        return;
    }
    // Without an error to list, the first line has to do: it says what is missing.
    const QString reason = errors > 0 ? counts : oneLine(output.trimmed().section('\n', 0, 0));
    setFailure(tr("Build failed: %1").arg(wrappable(reason)));
    tabs_->setCurrentWidget(errors > 0 ? static_cast<QWidget*>(table_) : output_);
}

void BuildPanel::showCancelled() {
    setBusy(false);
    setState(tr("Cancelled after %1").arg(secondsText(build_->elapsed())));
}

void BuildPanel::showElapsed() {
    if (build_)
        setState(tr("Building… %1 s").arg(build_->elapsed() / std::chrono::seconds(1)));
}

void BuildPanel::setBusy(bool busy) {
    const bool focusLeaves = cancel_->hasFocus() && !busy;
    progress_->setVisible(busy);
    start_->setEnabled(!busy && build_);
    cancel_->setEnabled(busy);
    if (focusLeaves)
        start_->setFocus();
    if (!busy) {
        elapsedTimer_.stop();
        return;
    }
    elapsedTimer_.start();
    showElapsed();
}

void BuildPanel::setState(const QString& text) {
    colourText(*state_, LogLevel::Info);
    state_->setText(text);
}

void BuildPanel::setFailure(const QString& text) {
    colourText(*state_, LogLevel::Error);
    state_->setText(text);
}

void BuildPanel::setResult(const QString& output) {
    notice_->hide();
    output_->setOutput(output);
    model_->setDiagnostics(app::BuildDiagnostics(output).list());
    const int count = model_->rowCount();
    tabs_->setTabText(tabs_->indexOf(table_), count > 0 ? tr("&Problems (%1)").arg(count) : tr("&Problems"));
    Q_EMIT problemsChanged(model_->count(Severity::Error), model_->count(Severity::Warning));
}

void BuildPanel::openFile(const QModelIndex& row) {
    notice_->hide();
    if (!row.isValid() || !build_)
        return;
    const app::BuildDiagnostic& diagnostic = model_->diagnostic(row.row());
    const auto tell = [this](const QString& problem) {
        notice_->setText(wrappable(problem));
        notice_->show();
    };
    if (diagnostic.file.isEmpty()) {
        tell(tr("This problem names no file."));
        return;
    }
    const QString path = build_->sourcePath(diagnostic.file);
    if (!QFileInfo(path).isFile())
        tell(tr("%1: there is no such file.").arg(oneLine(QDir::toNativeSeparators(path))));
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        tell(tr("%1: no program opens this file.").arg(oneLine(QDir::toNativeSeparators(path))));
}

void BuildPanel::copySelection() {
    QModelIndexList rows = table_->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList lines;
    for (const QModelIndex& row : rows)
        lines += asLine(model_->diagnostic(row.row()));
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join('\n'));
}

} // namespace tarvik::editor
