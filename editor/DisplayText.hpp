#pragma once

#include <QString>

namespace tarvik::editor {

// The text as one line of bounded length for lists and tables: line breaks and other control characters are
// shown as symbols, a long text ends in "…". Laying out a megabyte of text would stall the window.
[[nodiscard]] QString oneLine(const QString& text);

} // namespace tarvik::editor
