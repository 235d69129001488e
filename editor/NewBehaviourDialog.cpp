#include "NewBehaviourDialog.hpp"

#include "BehaviourName.hpp"
#include "DisplayText.hpp"
#include "EditorStyle.hpp"
#include "ProjectBuild.hpp"

#include <tarvik/core/Log.hpp>

#include <QCheckBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>

namespace tarvik::editor {

NewBehaviourDialog::NewBehaviourDialog(ProjectBuild& build, QWidget* parent)
    : QDialog(parent),
      build_(&build),
      name_(new QLineEdit(this)),
      open_(new QCheckBox(tr("&Open the file afterwards"), this)),
      hint_(plainLabel({}, this)) {
    setWindowTitle(tr("New Behaviour"));
    setAttribute(Qt::WA_DeleteOnClose);

    name_->setPlaceholderText(tr("Spinner"));
    open_->setChecked(true);
    hint_->setMinimumWidth(1); // a long path must not widen the dialog
    hint_->setMinimumHeight(2 * fontMetrics().lineSpacing());
    hint_->setAlignment(Qt::AlignTop);

    QFormLayout* form = createDialogForm(*this);
    form->addRow(tr("C&lass name"), name_);
    form->addRow({}, hint_);
    form->addRow({}, open_);
    create_ = addDialogButtons(*this, tr("&Create"));
    setMinimumWidth(520);

    connect(name_, &QLineEdit::textChanged, this, &NewBehaviourDialog::update);
    update();
}

void NewBehaviourDialog::accept() {
    if (!build_)
        return;
    QString error;
    if (!build_->builder().createBehaviour(name_->text(), &error)) {
        colourText(*hint_, LogLevel::Warn);
        hint_->setText(wrappable(oneLine(error)));
        adjustSize();
        return;
    }
    const QString file = path();
    if (open_->isChecked() && !QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        log::warn("Editor", "{}: no program opens this file", file.toStdString());
    Q_EMIT created(file);
    QDialog::accept();
}

QString NewBehaviourDialog::path() const {
    return build_ ? QDir(build_->builder().scriptsDir()).absoluteFilePath(name_->text() + ".cpp") : QString();
}

QString NewBehaviourDialog::shortPath() const {
    const QFileInfo file(path());
    return file.dir().dirName() + '/' + file.fileName();
}

QString NewBehaviourDialog::problem() const {
    const QString problem = problemWithBehaviourName(name_->text());
    if (problem.isEmpty() && QFileInfo::exists(path()))
        return tr("%1 exists already.").arg(shortPath());
    return problem;
}

void NewBehaviourDialog::update() {
    const bool named = !name_->text().isEmpty();
    const QString wrong = problem();
    create_->setEnabled(named && build_ && wrong.isEmpty());
    colourText(*hint_, wrong.isEmpty() ? LogLevel::Debug : LogLevel::Warn);
    if (!named)
        hint_->setText({});
    else if (wrong.isEmpty())
        hint_->setText(tr("The behaviour will be in %1").arg(shortPath()));
    else
        hint_->setText(wrong);
}

} // namespace tarvik::editor
