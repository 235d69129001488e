#pragma once

#include <QWindow>

namespace tarvik::app {

// The window that the given one is embedded in, however deeply; a window that is in none is its own.
inline QWindow& topLevelOf(QWindow& window) {
    QWindow* top = &window;
    while (QWindow* above = top->parent())
        top = above;
    return *top;
}

} // namespace tarvik::app
