#pragma once

#include <tarvik/app/Export.hpp>

#include <QString>

namespace tarvik::app {

// How long ago a moment in seconds since 1970-01-01 UTC was, in short English such as "5 min ago"; its local
// date when that is a month or more. A moment that is still to come is "Just now". Safe on any thread.
[[nodiscard]] TARVIK_APPCOMMON_API QString relativeTimeString(qint64 unixSeconds);

} // namespace tarvik::app
