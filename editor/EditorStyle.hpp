#pragma once

#include <tarvik/core/LogSink.hpp>

#include <QColor>

class QApplication;
class QLabel;

namespace tarvik::editor {

void applyEditorStyle(QApplication& application);

[[nodiscard]] QColor logLevelColour(LogLevel level);

enum class TextRole : std::uint8_t { Title, Heading, Muted };

void styleText(QLabel& label, TextRole role);

} // namespace tarvik::editor
