#pragma once

#include <QImage>

class QWidget;

namespace tarvik::editor {

class ViewportPane;

// The window as it is seen, with the scene in the viewport's place: what Vulkan draws is not in the window's
// own picture.
[[nodiscard]] QImage windowPicture(QWidget& window, const ViewportPane& pane);

} // namespace tarvik::editor
