#include "EditorStyle.hpp"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QStyleFactory>

namespace tarvik::editor {
namespace {

const QColor kWindow(0x25, 0x27, 0x2b);
const QColor kBase(0x1b, 0x1d, 0x20);
const QColor kAlternateBase(0x20, 0x22, 0x26);
const QColor kButton(0x33, 0x36, 0x3c);
const QColor kText(0xdf, 0xe2, 0xe6);
const QColor kMutedText(0x9a, 0xa0, 0xa8);
const QColor kDisabledText(0x6d, 0x72, 0x7a);
const QColor kAccent(0x2f, 0x63, 0xa6);
const QColor kLink(0x7a, 0xb0, 0xf0);
const QColor kWarning(0xe8, 0xb3, 0x4b);
const QColor kError(0xf2, 0x7a, 0x72);

// What the palette cannot say.
const char* const kStyleSheet = R"(
QMainWindow::separator { width: 5px; height: 5px; }
QDockWidget::title { padding: 6px 8px; background: #2c2f34; }
QHeaderView::section { padding: 4px 3px; border: none; background: #25272b; color: #9aa0a8; }
QToolTip { padding: 4px; border: 1px solid #44484f; background: #2c2f34; color: #dfe2e6; }
QStatusBar::item { border: none; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
)";

} // namespace

void applyEditorStyle(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create("Fusion"));

    QPalette palette(kButton, kWindow);
    palette.setColor(QPalette::Window, kWindow);
    palette.setColor(QPalette::Base, kBase);
    palette.setColor(QPalette::AlternateBase, kAlternateBase);
    palette.setColor(QPalette::Button, kButton);
    palette.setColor(QPalette::ToolTipBase, kButton);
    palette.setColor(QPalette::Highlight, kAccent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, kLink);
    palette.setColor(QPalette::PlaceholderText, kMutedText);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, kText);
        palette.setColor(QPalette::Disabled, role, kDisabledText);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, kButton);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, kDisabledText);
    QApplication::setPalette(palette);
    application.setStyleSheet(kStyleSheet);
}

QColor logLevelColour(LogLevel level) {
    switch (level) {
    case LogLevel::Debug:
        return kMutedText;
    case LogLevel::Warn:
        return kWarning;
    case LogLevel::Error:
        return kError;
    case LogLevel::Info:
        break;
    }
    return kText;
}

void styleText(QLabel& label, TextRole role) {
    QFont font = label.font();
    if (role == TextRole::Title)
        font.setPointSizeF(font.pointSizeF() * 2.0);
    if (role == TextRole::Heading)
        font.setPointSizeF(font.pointSizeF() * 1.25);
    if (role != TextRole::Muted)
        font.setWeight(QFont::DemiBold);
    label.setFont(font);
    if (role == TextRole::Muted) {
        QPalette palette = label.palette();
        palette.setColor(QPalette::WindowText, kMutedText);
        label.setPalette(palette);
    }
}

} // namespace tarvik::editor
