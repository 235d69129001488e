#include "ExportDialog.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "FileDialogs.hpp"
#include "ProjectBuild.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/project/Project.hpp>

#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

namespace tarvik::editor {
namespace {

constexpr int kProgressSteps = 1000; // a progress bar counts in int

} // namespace

ExportDialog::ExportDialog(ProjectBuild& build, const QString& name, QWidget* parent)
    : QDialog(parent),
      build_(&build),
      platform_(new QComboBox(this)),
      name_(new QLineEdit(name, this)),
      folder_(new QLineEdit(this)),
      progress_(new QProgressBar(this)),
      message_(plainLabel({}, this)) {
    setWindowTitle(tr("Export Game"));
    setAttribute(Qt::WA_DeleteOnClose);

    for (const app::ExportTarget& target : app::exportTargets({}))
        platform_->addItem(QString::fromStdString(target.platform));
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    folder_->setText(QDir::toNativeSeparators(documents + '/' + name));

    progress_->setRange(0, kProgressSteps);
    progress_->setTextVisible(false);
    message_->setMinimumWidth(1); // a long path must not widen the dialog
    message_->setMinimumHeight(3 * fontMetrics().lineSpacing());
    message_->setAlignment(Qt::AlignTop);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* buttons = new QDialogButtonBox;
    export_ = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    export_->setProperty("accent", true);
    open_ = buttons->addButton(tr("&Open Folder"), QDialogButtonBox::ActionRole);
    close_ = buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ExportDialog::reject);
    connect(open_, &QPushButton::clicked, this, [this] {
        const QString folder = QFileInfo(launcher_).path();
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
            log::warn("Editor", "{}: no program opens this folder", folder.toStdString());
    });

    QFormLayout* form = createDialogForm(*this);
    form->addRow(tr("&Platform"), platform_);
    form->addRow(tr("&Name"), name_);
    browse_ = addPlaceRow(*form, tr("&Folder"), folder_, tr("Browse for the folder"));
    connect(browse_, &QPushButton::clicked, this, &ExportDialog::chooseFolder);
    form->addRow({}, progress_);
    form->addRow({}, message_);
    form->addRow(buttons);
    setMinimumWidth(560);

    for (const QLineEdit* field : {name_, folder_})
        connect(field, &QLineEdit::textChanged, this, &ExportDialog::update);
    connect(&build, &ProjectBuild::finished, this, &ExportDialog::takeBuild);
    connect(&build, &ProjectBuild::cancelled, this, [this] {
        buildsAwaited_ = 0; // forgotten, too
        takeBuild(false);
    });
    connect(&exporter_, &Exporter::progressed, this, &ExportDialog::showProgress);
    connect(&exporter_, &Exporter::finished, this, &ExportDialog::takeOutcome);
    enter(Stage::Asking, {});
}

void ExportDialog::enter(Stage stage, const QString& message) {
    stage_ = stage;
    const bool asking = stage == Stage::Asking;
    const bool exported = stage == Stage::Exported;
    for (QWidget* field : {static_cast<QWidget*>(platform_), static_cast<QWidget*>(name_),
                           static_cast<QWidget*>(folder_), static_cast<QWidget*>(browse_)})
        field->setEnabled(asking);
    export_->setVisible(!exported);
    open_->setVisible(exported);
    close_->setText(exported ? tr("Close") : tr("Cancel"));
    progress_->setVisible(!asking && !exported);
    progress_->setMaximum(stage == Stage::Exporting ? kProgressSteps : 0); // 0: it only moves
    (exported ? close_ : export_)->setDefault(true);
    colourText(*message_, asking ? LogLevel::Warn : LogLevel::Debug); // when asking, it says what is wrong
    update();
    if (!message.isEmpty())
        message_->setText(wrappable(message));
}

void ExportDialog::update() {
    const QString wrong = problem();
    export_->setEnabled(stage_ == Stage::Asking && build_ && wrong.isEmpty());
    if (stage_ == Stage::Asking)
        message_->setText(wrappable(wrong));
}

QString ExportDialog::problem() const {
    if (!Project::isValidName(name_->text().toStdString()))
        return tr("A name has 1 to 64 letters, digits, spaces, '-' or '_'.");
    if (folder_->text().trimmed().isEmpty())
        return tr("Name a new or empty folder for the game.");
    const QFileInfo place(destination());
    if (place.exists() && !(place.isDir() && QDir(place.filePath())
                                                 .isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot |
                                                          QDir::Hidden | QDir::System)))
        return tr("%1 is not empty: choose an empty or new folder.").arg(folder_->text().trimmed());
    return {};
}

QString ExportDialog::destination() const {
    return QDir::fromNativeSeparators(folder_->text().trimmed());
}

void ExportDialog::chooseFolder() {
    askForFolder(this, windowTitle(), QFileInfo(destination()).path(), [this](const QString& chosen) {
        const QString place = QDir(chosen).isEmpty() ? chosen : QDir(chosen).filePath(name_->text());
        folder_->setText(QDir::toNativeSeparators(place));
    });
}

void ExportDialog::accept() {
    if (!build_ || !export_->isEnabled())
        return;
    const bool forHost = platform_->currentText().toStdString() == app::hostPlatform();
    if (forHost && build_->builder().hasScripts())
        build();
    else
        startExport();
}

void ExportDialog::build() {
    enter(Stage::Building, tr("Building the behaviours…"));
    // A build that runs may not have seen the last change: another one follows it.
    buildsAwaited_ = build_->busy() ? 2 : 1;
    build_->build();
}

void ExportDialog::takeBuild(bool ok) {
    if (stage_ != Stage::Building || --buildsAwaited_ > 0)
        return;
    if (ok)
        startExport();
    else
        enter(Stage::Asking, tr("The behaviours could not be built: the Build panel says why."));
}

void ExportDialog::startExport() {
    app::GameExport request;
    request.projectDir = app::toPath(build_->root());
    request.name = name_->text().toStdString();
    request.destination = app::toPath(destination());
    request.platform = platform_->currentText().toStdString();
    enter(Stage::Exporting, tr("Exporting…"));
    exporter_.start(std::move(request));
}

void ExportDialog::showProgress(quint64 done, quint64 total) {
    if (total == 0)
        return;
    done = std::min(done, total);
    progress_->setValue(static_cast<int>(done * kProgressSteps / total));
    const QLocale locale;
    message_->setText(tr("%1 of %2")
                          .arg(locale.formattedDataSize(static_cast<qint64>(done)),
                               locale.formattedDataSize(static_cast<qint64>(total))));
}

void ExportDialog::takeOutcome(const ExportOutcome& outcome) {
    launcher_ = outcome.launcher;
    if (!launcher_.isEmpty()) {
        const QString launched = tr("The game starts with %1").arg(QDir::toNativeSeparators(launcher_));
        enter(Stage::Exported, (QStringList{launched} + outcome.warnings).join("\n\n"));
        return;
    }
    enter(Stage::Asking, outcome.reason.isEmpty() ? tr("The export was cancelled.") : outcome.reason);
}

void ExportDialog::reject() {
    if (stage_ == Stage::Building)
        enter(Stage::Asking, tr("The export was cancelled."));
    else if (exporter_.busy())
        exporter_.cancel();
    else
        QDialog::reject();
}

} // namespace tarvik::editor
