#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace tarvik::editor {

// Has the user choose a folder in a dialog over the parent, which begins at start. The disk is asked for that
// one in the background: where it has none, or is too slow to tell, the dialog begins at the user's home.
void askForFolder(QWidget* parent, const QString& title, const QString& start,
                  const std::function<void(const QString&)>& take);

} // namespace tarvik::editor
