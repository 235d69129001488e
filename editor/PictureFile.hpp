#pragma once

#include <tarvik/core/Error.hpp>

#include <QImage>
#include <QString>

#include <expected>

namespace tarvik::editor {

// Whole or not at all, in the format that the file's name ends in. A failure names the file.
[[nodiscard]] std::expected<void, Error> writePicture(const QImage& picture, const QString& file);

} // namespace tarvik::editor
