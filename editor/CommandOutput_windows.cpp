#include "CommandOutput.hpp"

#include <io.h>

namespace tarvik::editor {

bool outputIsTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

} // namespace tarvik::editor
