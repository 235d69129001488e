#include "PreferencesDialog.hpp"

#include "DisplayText.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>

namespace tarvik::editor {
namespace {

using app::Preferences;

constexpr int kAutomatic = -1;

QLabel* captionLabel(const QString& text) {
    auto* label = plainLabel(text);
    label->setProperty("section", true);
    return label;
}

QLabel* hintLabel(const QString& text) {
    auto* label = plainLabel(text);
    label->setProperty("muted", true);
    return label;
}

} // namespace

PreferencesDialog::PreferencesDialog(const GpuList& gpus, QWidget* parent)
    : QDialog(parent),
      gpu_(new QComboBox),
      validation_(new QComboBox),
      vsync_(new QCheckBox(tr("&Vertical sync"))),
      folder_(new QLineEdit),
      folderHint_(hintLabel({})) {
    setWindowTitle(tr("Preferences"));
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumWidth(520);

    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(14);
    form->setVerticalSpacing(10);
    form->addRow(captionLabel(tr("Rendering")));
    form->addRow(tr("&GPU"), gpu_);
    if (!gpus)
        form->addRow({}, hintLabel(QString::fromStdString(gpus.error().message)));
    form->addRow(tr("V&alidation"), validation_);
    form->addRow({}, vsync_);
    form->addRow({}, hintLabel(tr("These take effect when the editor is started again.")));
    form->addRow(captionLabel(tr("Projects")));
    form->addRow(tr("&Folder"), createFolderRow());
    form->addRow({}, folderHint_);
    qobject_cast<QLabel*>(form->itemAt(form->rowCount() - 2, QFormLayout::LabelRole)->widget())
        ->setBuddy(folder_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    save_ = buttons->button(QDialogButtonBox::Save);
    save_->setProperty("accent", true);
    connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);

    auto* heading = new QLabel(windowTitle());
    heading->setProperty("heading", true);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(20, 20, 20, 16);
    box->setSpacing(14);
    box->addWidget(heading);
    box->addLayout(form);
    box->addStretch(1);
    box->addWidget(buttons);

    fill(Preferences::load(), gpus);
    connect(folder_, &QLineEdit::textChanged, this, &PreferencesDialog::checkFolder);
    checkFolder();
}

QLayout* PreferencesDialog::createFolderRow() {
    folder_->setPlaceholderText(QDir::toNativeSeparators(Preferences{}.effectiveProjectsDirectory()));
    auto* browse = new QPushButton(tr("&Browse…"));
    browse->setAutoDefault(false);
    browse->setAccessibleName(tr("Browse for the projects folder"));
    connect(browse, &QPushButton::clicked, this, &PreferencesDialog::browse);
    auto* row = new QHBoxLayout;
    row->addWidget(folder_, 1);
    row->addWidget(browse);
    return row;
}

// A GPU that was chosen and is gone stays chosen, to be there again when it is plugged in.
void PreferencesDialog::fill(const Preferences& preferences, const GpuList& gpus) {
    gpu_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    gpu_->addItem(tr("Automatic"), kAutomatic);
    for (const rhi::Gpu& gpu : gpus.value_or(std::vector<rhi::Gpu>())) {
        gpu_->addItem(tr("%1 – %2, GPU %3")
                          .arg(oneLine(QString::fromStdString(gpu.name)), QString::fromStdString(gpu.kind),
                               QString::number(gpu.index)),
                      static_cast<int>(gpu.index));
    }
    const int stored = preferences.gpu ? static_cast<int>(*preferences.gpu) : kAutomatic;
    if (gpu_->findData(stored) < 0)
        gpu_->addItem(tr("GPU %1 (not found)").arg(stored), stored);
    gpu_->setCurrentIndex(gpu_->findData(stored));

    validation_->addItem(tr("Default (off)"), Preferences::kValidationDefault);
    validation_->addItem(tr("On: mistakes go to the log, rendering is slower"), Preferences::kValidationOn);
    validation_->addItem(tr("Off"), Preferences::kValidationOff);
    validation_->setCurrentIndex(validation_->findData(preferences.validation));
    vsync_->setChecked(preferences.vsync);
    folder_->setText(QDir::toNativeSeparators(preferences.projectsDirectory));
}

void PreferencesDialog::browse() {
    const QString start = folder_->text().isEmpty() ? folder_->placeholderText() : folder_->text();
    auto* dialog = new QFileDialog(this, tr("Projects Folder"), start);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, folder_,
            [this](const QString& chosen) { folder_->setText(QDir::toNativeSeparators(chosen)); });
    dialog->open();
}

// A relative folder would depend on where the editor was started.
void PreferencesDialog::checkFolder() {
    const QString folder = chosen().projectsDirectory;
    const bool usable = folder.isEmpty() || QDir::isAbsolutePath(folder);
    save_->setEnabled(usable);
    folderHint_->setText(
        usable ? tr("Offered for new projects, without a restart. Empty: the default folder.")
               : tr("The folder needs its whole path, such as %1.").arg(folder_->placeholderText()));
}

Preferences PreferencesDialog::chosen() const {
    Preferences preferences;
    if (const int gpu = gpu_->currentData().toInt(); gpu != kAutomatic)
        preferences.gpu = static_cast<std::uint32_t>(gpu);
    preferences.validation = validation_->currentData().toUInt();
    preferences.vsync = vsync_->isChecked();
    if (!folder_->text().trimmed().isEmpty())
        preferences.projectsDirectory = QDir::fromNativeSeparators(folder_->text());
    return preferences;
}

void PreferencesDialog::accept() {
    chosen().save();
    const QSettings settings; // tries once more to write what could not be written
    if (settings.status() == QSettings::NoError) {
        QDialog::accept();
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Critical, tr("Save failed"),
                                tr("The preferences could not be written to %1.").arg(settings.fileName()),
                                QMessageBox::Ok, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace tarvik::editor
