#include "Terminal.hpp"

#include <windows.h>

namespace tarvik {

bool prepareColouredTerminal() {
    HANDLE terminal = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(terminal, &mode) == FALSE)
        return false;
    SetConsoleOutputCP(CP_UTF8);
    return SetConsoleMode(terminal, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

} // namespace tarvik
