#include "Controls.hpp"

#include "EditorStyle.hpp"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include <initializer_list>
#include <utility>

namespace tarvik::editor {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(Controls)
};

using Rows = std::initializer_list<std::pair<QString, QString>>;

QString section(const QString& title, const Rows& rows) {
    QString html = QString("<tr><td colspan=2><b>%1</b></td></tr>").arg(title);
    for (const auto& [control, effect] : rows)
        html += QString("<tr><td>%1</td><td style=\"padding-left: 24px\">%2</td></tr>").arg(control, effect);
    return html + "<tr><td>&nbsp;</td></tr>";
}

QString controls() {
    return "<table>" +
           section(Text::tr("Fly, while the right button is held"),
                   {{Text::tr("Mouse"), Text::tr("Look around")},
                    {Text::tr("W A S D"), Text::tr("Move ahead, left, back, right")},
                    {Text::tr("Q, E"), Text::tr("Move down, up")},
                    {Text::tr("Shift"), Text::tr("Move four times as fast")},
                    {Text::tr("Wheel"), Text::tr("Set the speed")}}) +
           section(Text::tr("Look at one place"),
                   {{Text::tr("Alt + left drag, Alt + middle drag"), Text::tr("Turn around it")},
                    {Text::tr("Middle drag"), Text::tr("Shift the view")},
                    {Text::tr("Wheel"), Text::tr("Go nearer or farther")},
                    {Text::tr("F"), Text::tr("Show the selected entity, or the whole scene")}}) +
           section(Text::tr("Select"),
                   {{Text::tr("Click"), Text::tr("Select an entity, or nothing")},
                    {Text::tr("Double click in the scene list"), Text::tr("Show that entity")}}) +
           section(Text::tr("Open"),
                   {{Text::tr("Drop a project folder"), Text::tr("Open the project")},
                    {Text::tr("Drop a scene file"), Text::tr("Show that scene of the open project")}}) +
           "</table>";
}

} // namespace

void showControls(QWidget& parent) {
    auto* dialog = new QDialog(&parent);
    dialog->setWindowTitle(Text::tr("Controls"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* text = new QLabel(controls(), dialog);
    text->setTextFormat(Qt::RichText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QFormLayout* form = createDialogForm(*dialog);
    form->addRow(text);
    form->addRow(buttons);
    buttons->button(QDialogButtonBox::Close)->setFocus();
    dialog->open();
}

} // namespace tarvik::editor
