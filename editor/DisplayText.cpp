#include "DisplayText.hpp"

#include <QLabel>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace tarvik::editor {

qsizetype wholeCharacters(QStringView text, qsizetype longest) {
    if (text.size() <= longest)
        return text.size();
    // What follows decides whether a character ends there; the rest of the text may be a megabyte.
    const QStringView seen = text.first(std::min(text.size(), longest + 2));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, seen.data(), seen.size());
    finder.setPosition(longest);
    const qsizetype end = finder.isAtBoundary() ? longest : finder.toPreviousBoundary();
    return end > 0 ? end : longest;
}

QString oneLine(const QString& text, qsizetype longest) {
    constexpr char16_t kSymbols = 0x2400; // the block of pictures for the control characters
    QString line = text.first(wholeCharacters(text, longest));
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

QLabel* plainLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace tarvik::editor
