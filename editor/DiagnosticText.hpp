#pragma once

#include <tarvik/app/BuildDiagnostics.hpp>

namespace tarvik::editor {

[[nodiscard]] QString severityName(app::BuildDiagnostic::Severity severity);

// "FILE:LINE:COLUMN", without what is unknown; empty without a file.
[[nodiscard]] QString placeOf(const app::BuildDiagnostic& diagnostic);

// As compilers write it, which other programs understand: "FILE:LINE:COLUMN: error: TEXT".
[[nodiscard]] QString asLine(const app::BuildDiagnostic& diagnostic);

} // namespace tarvik::editor
