#include "NewProjectDialog.hpp"

#include "Background.hpp"
#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "FileDialogs.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>
#include <tarvik/project/Project.hpp>

#include <QAccessible>
#include <QComboBox>
#include <QDir>
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
      hint_(plainLabel({})) {
    setWindowTitle(tr("New Project"));
    setAttribute(Qt::WA_DeleteOnClose);

    start_->addItem(tr("An empty project"), QVariant::fromValue(ProjectTemplate::Empty));
    start_->addItem(tr("The sample: a courtyard with a game to play"),
                    QVariant::fromValue(ProjectTemplate::Sample));
    start_->setCurrentIndex(start_->findData(QVariant::fromValue(start)));

    hint_->setMinimumWidth(1); // a long path must not widen the dialog
    hint_->setMinimumHeight(3 * fontMetrics().lineSpacing());
    hint_->setAlignment(Qt::AlignTop);
    styleText(*hint_, TextRole::Muted);

    QFormLayout* form = createDialogForm(*this);
    form->addRow(tr("&Name"), name_);
    browse_ = addPlaceRow(*form, tr("&Folder"), parentFolder_, tr("Browse for the folder"));
    connect(browse_, &QPushButton::clicked, this, &NewProjectDialog::chooseParentFolder);
    form->addRow(tr("&Start from"), start_);
    form->addRow({}, hint_);
    create_ = addDialogButtons(*this, tr("&Create"));
    setMinimumWidth(520);

    connect(name_, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    connect(parentFolder_, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    update();
}

void NewProjectDialog::accept() {
    setFieldsEnabled(false);
    create_->setEnabled(false);
    setFocus(); // or Enter, pressed once more, would cancel
    hint_->setText(wrappable(tr("Making the project in %1…").arg(folder())));
    const auto make = [path = app::toPath(folder()), name = name_->text(),
                       start = start_->currentData().value<ProjectTemplate>()] {
        return createProject(path, name, start);
    };
    inBackground(this, make, [this](const std::expected<void, Error>& made) { take(made); });
}

void NewProjectDialog::take(const std::expected<void, Error>& made) {
    if (!isVisible()) // cancelled
        return;
    if (made) {
        QDialog::accept();
        Q_EMIT created(folder());
        return;
    }
    setFieldsEnabled(true);
    name_->setFocus();
    update();
    hint_->setText(wrappable(QString::fromStdString(made.error().message)));
    colourText(*hint_, LogLevel::Error);
    QAccessibleEvent alert(hint_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NewProjectDialog::setFieldsEnabled(bool on) {
    for (QWidget* field : {static_cast<QWidget*>(name_), static_cast<QWidget*>(parentFolder_),
                           static_cast<QWidget*>(browse_), static_cast<QWidget*>(start_)})
        field->setEnabled(on);
}

void NewProjectDialog::chooseParentFolder() {
    askForFolder(this, tr("Folder for the Project"), parentFolder_->text(),
                 [this](const QString& folder) { parentFolder_->setText(folder); });
}

QString NewProjectDialog::folder() const {
    return parentFolder_->text() + '/' + name_->text();
}

void NewProjectDialog::update() {
    hint_->setStyleSheet({}); // of a failure
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
        hint_->setText(named ? wrappable(tr("The project will be in %1").arg(folder())) : QString());
    }
}

} // namespace tarvik::editor
