#pragma once

#include <filesystem>
#include <functional>

class QObject;

namespace tarvik::app {
class VulkanViewport;
}

namespace tarvik::editor {

// Saves what the viewport shows now as the project's picture for the start window, in the background; written
// is called afterwards unless the context is gone by then. A picture is worth no question to the user: a
// failure goes to the log. Null shows nothing, and leaves the picture that is there.
void writeThumbnail(app::VulkanViewport* viewport, const std::filesystem::path& projectRoot, QObject* context,
                    const std::function<void()>& written);

} // namespace tarvik::editor
