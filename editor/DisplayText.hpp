#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace tarvik::editor {

// The length of the text's beginning, in at most so many units, that cuts no character in two, be it an emoji
// or a letter with its accents. Only one that is longer by itself is cut.
[[nodiscard]] qsizetype wholeCharacters(QStringView text, qsizetype longest);

// The text as one line of bounded length for lists and tables: line breaks and other control characters are
// shown as symbols, a long text ends in "…". Laying out a megabyte of text would stall the window.
[[nodiscard]] QString oneLine(const QString& text, qsizetype longest = 1000);

// The text with places to wrap it after the separators of paths.
[[nodiscard]] QString wrappable(QString text);

// A label that wraps, and shows the text as it stands, whatever looks like markup in it. The caller's when it
// has no parent.
[[nodiscard]] QLabel* plainLabel(const QString& text, QWidget* parent = nullptr);

} // namespace tarvik::editor
