#include "NewProjectDialog.hpp"

#include "EditorStyle.hpp"

#include <tarvik/app/Preferences.hpp>
#include <tarvik/project/Project.hpp>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarvik::editor {

NewProjectDialog::NewProjectDialog(ProjectTemplate start, QWidget* parent)
    : QDialog(parent),
      name_(new QLineEdit),
      parentFolder_(new QLineEdit(app::Preferences::load().effectiveProjectsDirectory())),
      start_(new QComboBox),
      hint_(new QLabel) {
    setWindowTitle(tr("New Project"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* browse = new QPushButton(tr("&Browse…"));
    browse->setAutoDefault(false);
    browse->setAccessibleName(tr("Browse for the folder"));
    connect(browse, &QPushButton::clicked, this, &NewProjectDialog::chooseParentFolder);
    auto* place = new QHBoxLayout;
    place->setSpacing(8);
    place->addWidget(parentFolder_, 1);
    place->addWidget(browse);

    start_->addItem(tr("An empty project"), QVariant::fromValue(ProjectTemplate::Empty));
    start_->addItem(tr("The sample: a courtyard with a game to play"),
                    QVariant::fromValue(ProjectTemplate::Sample));
    start_->setCurrentIndex(start_->findData(QVariant::fromValue(start)));

    hint_->setTextFormat(Qt::PlainText);
    hint_->setWordWrap(true);
    hint_->setMinimumHeight(2 * fontMetrics().lineSpacing());
    hint_->setAlignment(Qt::AlignTop);
    styleText(*hint_, TextRole::Muted);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    create_ = buttons->addButton(tr("&Create"), QDialogButtonBox::AcceptRole);
    create_->setProperty("accent", true);
    connect(buttons, &QDialogButtonBox::accepted, this, &NewProjectDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &NewProjectDialog::reject);

    QFormLayout* form = createDialogForm(*this);
    form->addRow(tr("&Name"), name_);
    form->addRow(tr("&Folder"), place);
    qobject_cast<QLabel*>(form->labelForField(place))->setBuddy(parentFolder_);
    form->addRow(tr("&Start from"), start_);
    form->addRow({}, hint_);
    form->addRow(buttons);
    create_->setDefault(true); // which counts only within the dialog
    setMinimumWidth(520);

    connect(name_, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    connect(parentFolder_, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    update();
}

void NewProjectDialog::accept() {
    Q_EMIT projectRequested(folder(), name_->text(), start_->currentData().value<ProjectTemplate>());
    QDialog::accept();
}

void NewProjectDialog::chooseParentFolder() {
    auto* dialog = new QFileDialog(this, tr("Folder for the Project"), parentFolder_->text());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, parentFolder_, &QLineEdit::setText);
    dialog->open();
}

QString NewProjectDialog::folder() const {
    return parentFolder_->text() + '/' + name_->text();
}

void NewProjectDialog::update() {
    const bool named = Project::isValidName(name_->text().toStdString());
    // Where another one is would depend on where the editor was started.
    const bool placed = QDir::isAbsolutePath(parentFolder_->text());
    create_->setEnabled(named && placed);
    if (!named && !name_->text().isEmpty()) {
        hint_->setText(
            tr("A name has 1 to 64 letters of a to z, digits, spaces, hyphens or underscores, no space "
               "at either end, and is none that Windows reserves."));
    } else if (!placed) {
        hint_->setText(tr("The folder needs its whole path."));
    } else {
        hint_->setText(named ? tr("The project will be in %1").arg(folder()) : QString());
    }
}

} // namespace tarvik::editor
