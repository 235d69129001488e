#pragma once

#include <QString>

namespace tarvik::editor {

// Why a behaviour of this name could not be created or would not compile; empty when it would.
[[nodiscard]] QString problemWithBehaviourName(const QString& name);

} // namespace tarvik::editor
