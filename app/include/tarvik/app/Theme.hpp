#pragma once

#include <tarvik/app/Export.hpp>

#include <QIcon>

class QApplication;
class QString;

// The one look of the editor. Widgets opt into a variant of the style sheet by setting a dynamic property to
// true before they are first shown:
//   accent   QPushButton: the one emphasised button of a dialog
//   flat     QPushButton: without a frame
//   muted    QLabel: secondary text
//   heading  QLabel: large title
//   section  QLabel: caption in small capitals
namespace tarvik::app::theme {

// Style, palette, font and style sheet of the whole application. May be called again at any time; best before
// the first window, which then need not be styled twice.
TARVIK_APPCOMMON_API void apply(QApplication& app);

// The built-in icon of that name, such as "play" or "scene/bulb". A name that is not built in gives an icon
// that paints nothing. Painting needs Qt's SVG icon engine, a plug-in.
[[nodiscard]] TARVIK_APPCOMMON_API QIcon icon(const QString& name);

} // namespace tarvik::app::theme
