#pragma once

#include "CommandLine.hpp"

#include <cstdio>

namespace tarvik::editor {

// At once, so that lines on both streams come in their order.
void writeText(std::FILE* stream, const QString& text);

// Tells why on standard error; returns the status for the process.
int fail(ExitStatus status, const QString& reason);

// Whether a line on standard output can be written over.
[[nodiscard]] bool outputIsTerminal();

} // namespace tarvik::editor
