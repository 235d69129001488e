#pragma once

#include <filesystem>

namespace tarvik::app {
class VulkanViewport;
}

namespace tarvik::editor {

// Saves what the viewport shows as the project's picture for the start window. A picture is worth no question
// to the user: a failure goes to the log. Null shows nothing, and leaves the picture that is there.
void writeThumbnail(app::VulkanViewport* viewport, const std::filesystem::path& projectRoot);

} // namespace tarvik::editor
