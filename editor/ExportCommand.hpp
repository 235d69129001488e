#pragma once

#include "CommandLine.hpp"

namespace tarvik::editor {

class TerminationSignals;

// Builds the behaviours where they are to be exported, then exports the project that the command line names,
// without a window; returns the exit status of the process. Standard error gets the warnings and what went
// wrong, standard output how it goes. Needs a QCoreApplication.
[[nodiscard]] int exportProject(const CommandLine& commandLine, const TerminationSignals& termination);

} // namespace tarvik::editor
