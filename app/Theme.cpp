#include <tarvik/app/Theme.hpp>

#include "PreferredFamily.hpp"
#include "StyleSheet.hpp"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

namespace tarvik::app::theme {
namespace {

constexpr double kPointSize = 9.5;

QPalette makePalette() {
    struct Entry {
        QPalette::ColorGroup group;
        QPalette::ColorRole role;
        QColor colour;
    };
    const Entry entries[] = {
        {QPalette::All, QPalette::Window, 0x121316},
        {QPalette::All, QPalette::WindowText, 0xd7dae0},
        {QPalette::All, QPalette::Base, 0x16181c},
        {QPalette::All, QPalette::AlternateBase, 0x1a1c21},
        {QPalette::All, QPalette::ToolTipBase, 0x22252b},
        {QPalette::All, QPalette::ToolTipText, 0xd7dae0},
        {QPalette::All, QPalette::Text, 0xd7dae0},
        {QPalette::All, QPalette::Button, 0x22252b},
        {QPalette::All, QPalette::ButtonText, 0xd7dae0},
        {QPalette::All, QPalette::BrightText, Qt::white},
        {QPalette::All, QPalette::Highlight, 0x2b4a80},
        {QPalette::All, QPalette::HighlightedText, Qt::white},
        {QPalette::All, QPalette::Link, 0x4f8cff},
        {QPalette::All, QPalette::PlaceholderText, 0x6b717c},
        {QPalette::Disabled, QPalette::Text, 0x5b616c},
        {QPalette::Disabled, QPalette::ButtonText, 0x5b616c},
        {QPalette::Disabled, QPalette::WindowText, 0x5b616c},
    };
    QPalette palette;
    for (const Entry& entry : entries)
        palette.setColor(entry.group, entry.role, entry.colour);
    return palette;
}

QFont makeFont() {
    QFont font = QApplication::font();
    if (const QString family = preferredFamily(QFontDatabase::families()); !family.isEmpty())
        font.setFamily(family);
    font.setPointSizeF(kPointSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

} // namespace

void apply(QApplication& app) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(makePalette());
    QApplication::setFont(makeFont());
    app.setStyleSheet(QString::fromLatin1(kStyleSheet));
}

QIcon icon(const QString& name) {
    const QString file = QStringLiteral(":/icons/%1.svg").arg(name);
    // Qt's SVG icon engine complains of a file that is missing.
    return QFile::exists(file) ? QIcon(file) : QIcon();
}

} // namespace tarvik::app::theme
