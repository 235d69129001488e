#pragma once

#include <tarvik/app/Export.hpp>

#include <QString>

#include <filesystem>

namespace tarvik::app {

// Built from the UTF-16 text; separators are left as they are.
[[nodiscard]] TARVIK_APPCOMMON_API std::filesystem::path toPath(const QString& text);

// The generic form: separators come out as "/".
[[nodiscard]] TARVIK_APPCOMMON_API QString toQString(const std::filesystem::path& path);

} // namespace tarvik::app
