#include "Terminal.hpp"

#include <unistd.h>

namespace tarvik {

bool prepareColouredTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

} // namespace tarvik
