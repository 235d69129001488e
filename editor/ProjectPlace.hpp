#pragma once

class QString;

namespace tarvik::editor {

// Why the behaviours of a project that was opened in the folder cannot be built there; empty when they can.
[[nodiscard]] QString problemWithProjectPlace(const QString& root);

} // namespace tarvik::editor
