#include "Terminal.hpp"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace tarvik {

bool prepareColouredTerminal() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

} // namespace tarvik
