#pragma once

#include <tarvik/app/Export.hpp>

#include <QImage>
#include <QPixmap>

class QSize;
class QString;

namespace tarvik::app {

// The top left part of the project's saved picture, scaled to cover the size, which is in pixels; the
// placeholder where there is no picture that can be read. Time and memory are bounded, whatever the file
// holds. GUI thread only; root without a separator at its end.
[[nodiscard]] TARVIK_APPCOMMON_API QPixmap projectThumbnail(const QString& root, const QString& name,
                                                            const QSize& size);

// The part of it that reads the file; null where there is no picture. On any thread, for lists that must not
// wait for a slow folder.
[[nodiscard]] TARVIK_APPCOMMON_API QImage projectThumbnailImage(const QString& root, const QSize& size);

// The name's initials on colours of its own, which are the same in every run. GUI thread only.
[[nodiscard]] TARVIK_APPCOMMON_API QPixmap placeholderThumbnail(const QString& name, const QSize& size);

} // namespace tarvik::app
