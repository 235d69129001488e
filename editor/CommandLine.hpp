#pragma once

#include <tarvik/app/AppOptions.hpp>

#include <glm/vec3.hpp>

#include <QStringList>

#include <cstdint>
#include <expected>
#include <optional>

namespace tarvik::editor {

enum class ExitStatus : std::uint8_t { Done = 0, Failed = 1, Usage = 2, TimeLimit = 3 };

// The command line asks for no window: text answers it, on standard output when status is Done, else on
// standard error.
struct CommandLineStop {
    ExitStatus status;
    QString text;
};

// arguments as QCoreApplication has them, the program's name first. Needs a QCoreApplication.
[[nodiscard]] std::expected<app::AppOptions, CommandLineStop> parseCommandLine(const QStringList& arguments);

// "x,y,z" in metres.
[[nodiscard]] std::optional<glm::vec3> parsePoint(const QString& text);

} // namespace tarvik::editor
