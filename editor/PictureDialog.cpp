#include "PictureDialog.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "FileDialogs.hpp"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace tarvik::editor {
namespace {

constexpr int kLongestSide = 16384; // what most GPUs can draw

QSpinBox* lengthField(int length, const QString& name, PictureDialog& dialog) {
    auto* field = new QSpinBox(&dialog);
    field->setRange(1, kLongestSide);
    field->setValue(length);
    field->setAccessibleName(name);
    return field;
}

} // namespace

PictureDialog::PictureDialog(QSize seen, const QString& file, QWidget* parent)
    : QDialog(parent),
      presets_(new QComboBox(this)),
      width_(lengthField(seen.width(), tr("Width in pixels"), *this)),
      height_(lengthField(seen.height(), tr("Height in pixels"), *this)),
      file_(new QLineEdit(QDir::toNativeSeparators(file), this)),
      hint_(plainLabel({}, this)) {
    setWindowTitle(tr("Save Picture"));
    setAttribute(Qt::WA_DeleteOnClose);

    presets_->addItem(tr("As it is seen"), seen);
    presets_->addItem(tr("Full HD"), QSize(1920, 1080));
    presets_->addItem(tr("4K"), QSize(3840, 2160));
    presets_->addItem(tr("8K"), QSize(7680, 4320));
    presets_->addItem(tr("Square"), QSize(2048, 2048));
    presets_->addItem(tr("Other"), QSize());
    connect(presets_, &QComboBox::activated, this, &PictureDialog::takePreset);
    for (const QSpinBox* field : {width_, height_})
        connect(field, &QSpinBox::valueChanged, this, &PictureDialog::showPreset);

    auto* size = new QHBoxLayout;
    size->setSpacing(8);
    size->addWidget(presets_, 1);
    size->addWidget(width_);
    size->addWidget(new QLabel(tr("×"), this));
    size->addWidget(height_);
    size->addWidget(new QLabel(tr("pixels"), this));

    connect(file_, &QLineEdit::textChanged, this, &PictureDialog::update);
    styleText(*hint_, TextRole::Muted);

    QFormLayout* form = createDialogForm(*this);
    form->addRow(tr("Si&ze"), size);
    qobject_cast<QLabel*>(form->labelForField(size))->setBuddy(presets_);
    connect(addPlaceRow(*form, tr("&File"), file_, tr("Browse for the file")), &QPushButton::clicked, this,
            &PictureDialog::chooseFile);
    form->addRow({}, hint_);
    save_ = addDialogButtons(*this, tr("&Save"));
    setMinimumWidth(560);
    update();
}

void PictureDialog::accept() {
    Q_EMIT pictureRequested(pictureSize(), file());
    QDialog::accept();
}

void PictureDialog::takePreset() {
    const QSize size = presets_->currentData().toSize();
    if (size.isEmpty()) {
        width_->setFocus();
        return;
    }
    width_->setValue(size.width());
    height_->setValue(size.height());
}

void PictureDialog::showPreset() {
    const int preset = presets_->findData(pictureSize());
    presets_->setCurrentIndex(preset >= 0 ? preset : presets_->count() - 1);
}

void PictureDialog::chooseFile() {
    QFileDialog* dialog = createPictureDialog(this, windowTitle(), file());
    dialog->setOption(QFileDialog::DontConfirmOverwrite); // the hint says so
    connect(dialog, &QFileDialog::fileSelected, file_,
            [this](const QString& chosen) { file_->setText(QDir::toNativeSeparators(chosen)); });
    dialog->open();
}

void PictureDialog::update() {
    const bool named = !file_->text().trimmed().isEmpty();
    save_->setEnabled(named);
    hint_->setText(named && QFileInfo::exists(file()) ? tr("Replaces the picture that is there.")
                                                      : QString());
}

QSize PictureDialog::pictureSize() const {
    return {width_->value(), height_->value()};
}

QString PictureDialog::file() const {
    const QString name = QDir::fromNativeSeparators(file_->text().trimmed());
    return name.endsWith(".png", Qt::CaseInsensitive) ? name : name + ".png";
}

} // namespace tarvik::editor
