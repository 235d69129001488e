#include "DisplayText.hpp"

#include <QLabel>

namespace tarvik::editor {

QString oneLine(const QString& text, qsizetype longest) {
    constexpr char16_t kSymbols = 0x2400; // the block of pictures for the control characters
    QString line = text.left(longest);
    for (QChar& c : line) {
        if (c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u'↵';
        else if (c == u'\t')
            c = u' ';
        else if (c < u' ')
            c = QChar(static_cast<char16_t>(kSymbols + c.unicode()));
    }
    if (text.size() > longest)
        line += u'…';
    return line;
}

QString wrappable(QString text) {
    constexpr QChar kZeroWidthSpace(0x200b);
    for (const QChar separator : {u'/', u'\\'})
        text.replace(separator, QString(separator) + kZeroWidthSpace);
    return text;
}

QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace tarvik::editor
