#include "CommandOutput.hpp"

#include <unistd.h>

namespace tarvik::editor {

bool outputIsTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

} // namespace tarvik::editor
