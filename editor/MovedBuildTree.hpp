#pragma once

class QString;

namespace tarvik::editor {

// Removes the project's build tree if it was made when the project lay elsewhere: CMake refuses to go on with
// it, and the builds of a project that was moved or copied would all fail. Any other tree stays.
void removeMovedBuildTree(const QString& projectRoot);

} // namespace tarvik::editor
