#pragma once

#include <tarvik/app/AppOptions.hpp>

namespace tarvik::editor {

class TerminationSignals;

// Builds the behaviours of the project that the options name, without a window; returns the exit status of
// the process. Standard error gets the diagnostics, or why the build failed without any; standard output how
// it goes. Needs a QCoreApplication.
[[nodiscard]] int buildProject(const app::AppOptions& options, const TerminationSignals& termination);

} // namespace tarvik::editor
