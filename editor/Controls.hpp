#pragma once

class QWidget;

namespace tarvik::editor {

// What the mouse and the keys do in the scene view.
void showControls(QWidget& parent);

} // namespace tarvik::editor
