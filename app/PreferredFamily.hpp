#pragma once

#include <QStringList>

namespace tarvik::app::theme {

// The first of the editor's preferred fonts that is among the families, by its exact name; null if none is.
[[nodiscard]] inline QString preferredFamily(const QStringList& families) {
    for (const char* name : {"Inter", "Inter Display", "Noto Sans", "Segoe UI", "Cantarell"}) {
        if (const QString family = QString::fromLatin1(name); families.contains(family))
            return family;
    }
    return {};
}

} // namespace tarvik::app::theme
