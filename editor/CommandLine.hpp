#pragma once

#include <tarvik/app/AppOptions.hpp>

#include <glm/vec3.hpp>

#include <QStringList>

#include <cstdint>
#include <expected>
#include <optional>

namespace tarvik::editor {

enum class ExitStatus : std::uint8_t { Done = 0, Failed = 1, Usage = 2, TimeLimit = 3 };

// What to export without a window; the destination is empty when nothing is.
struct ExportChoice {
    QString destination;
    QString platform; // empty: this one
    QString name;     // of the game; empty: the project's
};

struct CommandLine {
    app::AppOptions options;
    ExportChoice exporting;
};

// The command line asks for no window: text answers it, on standard output when status is Done, else on
// standard error.
struct CommandLineStop {
    ExitStatus status;
    QString text;
};

// arguments as QCoreApplication has them, the program's name first. Needs a QCoreApplication.
[[nodiscard]] std::expected<CommandLine, CommandLineStop> parseCommandLine(const QStringList& arguments);

// "x,y,z" in metres.
[[nodiscard]] std::optional<glm::vec3> parsePoint(const QString& text);

} // namespace tarvik::editor
