#include <tarvik/app/ProjectSettingsDialog.hpp>

#include <tarvik/app/Paths.hpp>
#include <tarvik/project/Project.hpp>

#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QDirIterator>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvik::app {

namespace {

// The text as it stands: a folder's name may look like markup. A long one wraps, and does not make the dialog
// wider than the screen.
QLabel* mutedLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setProperty("muted", true);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QSizePolicy policy = label->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    label->setSizePolicy(policy);
    return label;
}

void showProblem(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text) {
    auto* box = new QMessageBox(icon, title, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace

ProjectSettingsDialog::ProjectSettingsDialog(Project& edited, QWidget* parent)
    : QDialog(parent),
      project(edited),
      nameEdit(new QLineEdit(QString::fromStdString(project.name()))),
      descriptionEdit(new QPlainTextEdit(QString::fromStdString(project.description()))),
      sceneCombo(new QComboBox) {
    setWindowTitle(tr("Project Settings"));
    setMinimumWidth(520);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(20, 20, 20, 16);
    box->setSpacing(14);

    auto* heading = new QLabel(tr("Project Settings"));
    heading->setProperty("heading", true);
    box->addWidget(heading);

    descriptionEdit->setFixedHeight(80);
    descriptionEdit->setTabChangesFocus(true); // else the keyboard finds no way out of it
    fillScenes();

    auto* location = mutedLabel(toQString(project.rootDir()));
    location->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* engineVersion = mutedLabel(QString::fromStdString(project.engineVersion()));
    const qint64 seconds = project.createdUnix();
    auto* created = mutedLabel(seconds > 0 ? QDateTime::fromSecsSinceEpoch(seconds).toString(Qt::TextDate)
                                           : tr("Unknown"));

    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(14);
    form->setVerticalSpacing(10);
    form->addRow(tr("Name"), nameEdit);
    form->addRow(tr("Description"), descriptionEdit);
    form->addRow(tr("Default scene"), sceneCombo);
    form->addRow(tr("Location"), location);
    form->addRow(tr("Engine version"), engineVersion);
    form->addRow(tr("Created"), created);
    box->addLayout(form);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Save)->setProperty("accent", true);
    connect(buttons, &QDialogButtonBox::accepted, this, &ProjectSettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    box->addWidget(buttons);
}

void ProjectSettingsDialog::fillScenes() {
    // As wide as the form, not as the longest path.
    sceneCombo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);

    const QDir root(toQString(project.rootDir()));
    QStringList scenes;
    QDirIterator files(toQString(project.contentDir()), {"*.lscene"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        scenes += root.relativeFilePath(files.next());
    const QString current = QString::fromStdString(project.defaultScene());
    if (!scenes.contains(current))
        scenes += current;
    sceneCombo->addItems(scenes);
    sceneCombo->setCurrentText(current);
}

void ProjectSettingsDialog::accept() {
    std::string name = nameEdit->text().trimmed().toStdString();
    if (!Project::isValidName(name)) {
        showProblem(this, QMessageBox::Warning, tr("Invalid name"),
                    tr("Use letters, digits, spaces, '-' or '_' (max 64 characters)."));
        return;
    }
    project.setName(std::move(name));
    project.setDescription(descriptionEdit->toPlainText().toStdString());
    project.setDefaultScene(sceneCombo->currentText().toStdString());
    if (const auto saved = project.save(); !saved) {
        showProblem(this, QMessageBox::Critical, tr("Save failed"),
                    QString::fromStdString(saved.error().message));
        return;
    }
    QDialog::accept();
}

} // namespace tarvik::app
