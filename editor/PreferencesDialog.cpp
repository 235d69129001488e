#include "PreferencesDialog.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "FileDialogs.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
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
    auto* label = new QLabel(text);
    label->setContentsMargins(0, 6, 0, 0);
    styleText(*label, TextRole::Section);
    return label;
}

QLabel* hintLabel(const QString& text) {
    auto* label = new QLabel(text);
    styleText(*label, TextRole::Muted);
    return label;
}

} // namespace

PreferencesDialog::PreferencesDialog(const GpuList& gpus, QWidget* parent)
    : QDialog(parent),
      gpu_(new QComboBox(this)),
      validation_(new QComboBox(this)),
      vsync_(new QCheckBox(tr("&Vertical sync"), this)),
      folder_(new QLineEdit(this)) {
    setWindowTitle(tr("Preferences"));
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumWidth(520);

    QFormLayout* form = createDialogForm(*this);
    form->addRow(captionLabel(tr("Rendering")));
    form->addRow(tr("&GPU"), gpu_);
    if (!gpus) {
        QLabel* problem = plainLabel(QString::fromStdString(gpus.error().message));
        styleText(*problem, TextRole::Muted);
        form->addRow({}, problem);
    }
    form->addRow(tr("V&alidation"), validation_);
    form->addRow({}, vsync_);
    form->addRow({}, hintLabel(tr("These take effect when the editor is started again.")));
    form->addRow(captionLabel(tr("Projects")));
    folder_->setPlaceholderText(QDir::toNativeSeparators(Preferences{}.effectiveProjectsDirectory()));
    connect(addPlaceRow(*form, tr("&Folder"), folder_, tr("Browse for the projects folder")),
            &QPushButton::clicked, this, &PreferencesDialog::browse);
    form->addRow({}, hintLabel(tr("New projects are offered a place here from now on.")));
    addDialogButtons(*this, tr("&Save"));

    fill(Preferences::load(), gpus);
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
    askForFolder(this, tr("Projects Folder"), start,
                 [this](const QString& chosen) { folder_->setText(QDir::toNativeSeparators(chosen)); });
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
    const Preferences preferences = chosen();
    const QString& folder = preferences.projectsDirectory;
    if (!folder.isEmpty() && !QDir::isAbsolutePath(folder)) {
        // Where it is would depend on where the editor was started.
        showProblem(
            tr("Invalid folder"),
            tr("The projects folder needs its whole path, such as %1.").arg(folder_->placeholderText()));
        return;
    }
    QSettings store; // keeps what could not be written, to see it fail
    preferences.save();
    store.sync();
    if (store.status() != QSettings::NoError) {
        showProblem(tr("Save failed"),
                    tr("The preferences could not be written to %1.").arg(store.fileName()));
        return;
    }
    QDialog::accept();
}

void PreferencesDialog::showProblem(const QString& title, const QString& text) {
    auto* box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace tarvik::editor
