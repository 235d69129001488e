#include "EditorStyle.hpp"

#include <tarvik/app/Theme.hpp>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVariant>

#include <utility>

// A static library's resources have to be asked for, and from outside any namespace.
static void registerIcons() {
    Q_INIT_RESOURCE(editor);
}

namespace tarvik::editor {
namespace {

const char* const kStyleSheet = R"(
QPushButton:focus, QToolButton:focus, QCheckBox::indicator:focus { border-color: #4f8cff; }
QPushButton[accent="true"]:focus, QCheckBox::indicator:checked:focus { border-color: #ffffff; }
QPushButton[accent="true"]:disabled { color: #5b616c; background: #1e2126; border-color: #2a2e35; }
QComboBox:disabled { color: #6b717c; }
QTreeView, QListView, QTableView, QScrollArea { border: 1px solid transparent; }
QTreeView:focus, QListView:focus, QTableView:focus, QScrollArea:focus { border-color: #4f8cff; }
QTabBar::tab:selected:focus { background: #2b4a80; color: #ffffff; }
QMenu::indicator { left: 6px; width: 14px; height: 14px; }
QCheckBox::indicator:checked, QMenu::indicator:checked { image: url(:/editor/icons/check.svg); }
QComboBox::down-arrow { image: url(:/editor/icons/down.svg); width: 12px; height: 12px; }
QTabBar { qproperty-drawBase: 0; }
QTabWidget::pane { border: none; border-top: 1px solid #23262d; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QMessageBox {
    messagebox-critical-icon: url(:/icons/error.svg); messagebox-warning-icon: url(:/icons/warning.svg);
    messagebox-information-icon: url(:/icons/info.svg);
    messagebox-question-icon: url(:/editor/icons/question.svg);
}
QLineEdit { lineedit-clear-button-icon: url(:/icons/close.svg); }
QFileDialog {
    backward-icon: url(:/icons/back.svg); forward-icon: url(:/editor/icons/forward.svg);
    filedialog-parent-directory-icon: url(:/editor/icons/up.svg);
    filedialog-new-directory-icon: url(:/icons/plus.svg); filedialog-listview-icon: url(:/icons/grid.svg);
    filedialog-detailedview-icon: url(:/editor/icons/list.svg);
}
QComboBox { padding-left: 8px; }
QTableView QHeaderView::section { padding-left: 3px; }
)";

} // namespace

void applyEditorStyle(QApplication& application) {
    registerIcons();
    app::theme::apply(application);
    application.setStyleSheet(application.styleSheet() + QString::fromLatin1(kStyleSheet));
}

QColor logLevelColour(LogLevel level) {
    switch (level) {
    case LogLevel::Debug:
        return 0x8a909c;
    case LogLevel::Warn:
        return 0xe8b84a;
    case LogLevel::Error:
        return 0xec6a5e;
    case LogLevel::Info:
        break;
    }
    return 0xd7dae0;
}

void colourText(QLabel& label, LogLevel level) {
    const QString sheet = "color: " + logLevelColour(level).name();
    if (label.styleSheet() != sheet)
        label.setStyleSheet(sheet);
}

void styleText(QLabel& label, TextRole role) {
    constexpr const char* properties[] = {"heading", "section", "muted"};
    label.setProperty(properties[std::to_underlying(role)], true);
}

QFormLayout* createDialogForm(QDialog& dialog) {
    auto* heading = new QLabel(dialog.windowTitle(), &dialog);
    heading->setContentsMargins(0, 0, 0, 4);
    styleText(*heading, TextRole::Heading);
    auto* form = new QFormLayout(&dialog);
    form->setContentsMargins(20, 20, 20, 16);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(14);
    form->setVerticalSpacing(10);
    form->addRow(heading);
    return form;
}

QPushButton* addPlaceRow(QFormLayout& form, const QString& caption, QLineEdit* field, const QString& browse) {
    auto* button = new QPushButton(QObject::tr("&Browse…"));
    button->setAutoDefault(false);
    button->setAccessibleName(browse);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(field, 1);
    row->addWidget(button);
    form.addRow(caption, row);
    qobject_cast<QLabel*>(form.labelForField(row))->setBuddy(field);
    return button;
}

QPushButton* addDialogButtons(QDialog& dialog, const QString& accept) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, &dialog);
    buttons->setContentsMargins(0, 4, 0, 0);
    auto* accepting = new QPushButton(accept, buttons);
    accepting->setProperty("accent", true); // which the style sheet asks for when the button joins the others
    buttons->addButton(accepting, QDialogButtonBox::AcceptRole);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    qobject_cast<QFormLayout*>(dialog.layout())->addRow(buttons);
    accepting->setDefault(true); // which counts only within the dialog
    return accepting;
}

} // namespace tarvik::editor
