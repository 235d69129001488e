#pragma once

#include <QString>

#include <functional>

class QFileDialog;
class QWidget;

namespace tarvik::editor {

// Has the user choose a folder in a dialog over the parent, which begins at start. The disk is asked for that
// one in the background: where it has none, or is too slow to tell, the dialog begins at the user's home.
void askForFolder(QWidget* parent, const QString& title, const QString& start,
                  const std::function<void(const QString&)>& take);

// For where to save a picture, to be opened. Deletes itself when it is closed.
[[nodiscard]] QFileDialog* createPictureDialog(QWidget* parent, const QString& title, const QString& file);

} // namespace tarvik::editor
