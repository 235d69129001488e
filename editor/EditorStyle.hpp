#pragma once

#include <tarvik/core/LogSink.hpp>

#include <QColor>

class QApplication;
class QDialog;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarvik::editor {

// The theme, and what it leaves open: visible keyboard focus, an accent that can be disabled, marks for check
// boxes and drop-down lists, quiet frames around tabs, signs of the icon set in place of the toolkit's own.
void applyEditorStyle(QApplication& application);

[[nodiscard]] QColor logLevelColour(LogLevel level);

enum class TextRole : std::uint8_t { Heading, Section, Muted };

// As a log line of that level. The style sheet's colour goes over that of a palette.
void colourText(QLabel& label, LogLevel level);

// For a label that was not shown yet.
void styleText(QLabel& label, TextRole role);

// The layout of a dialog's rows, below the dialog's title as heading.
[[nodiscard]] QFormLayout* createDialogForm(QDialog& dialog);

// A row for a file or folder: the field, and a button, spoken of as named, that is returned.
QPushButton* addPlaceRow(QFormLayout& form, const QString& caption, QLineEdit* field, const QString& browse);

// Below these rows: Cancel, and the emphasised default button that accepts, which is returned.
QPushButton* addDialogButtons(QDialog& dialog, const QString& accept);

} // namespace tarvik::editor
