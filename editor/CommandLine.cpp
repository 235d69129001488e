#include "CommandLine.hpp"

#include <tarvik/core/LogSink.hpp>
#include <tarvik/project/Project.hpp>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <array>
#include <cmath>
#include <limits>

namespace tarvik::editor {
namespace {

const char* const kDescription =
    R"(Opens a Tarvik project in the editor, plays it, builds its behaviours or exports it.

Without a project the editor shows the recent ones. With --frames, --screenshot or both it works on its own:
nothing is asked, a failure is a line on standard error, and the program quits by itself. With --build or --export
it needs no display: what the compilers complain about goes to standard error.)";

const char* const kExitStatuses = R"(
Exit status:
  0  all went well
  1  the project, its scene, the build, the export, the rendering or a file to be written failed; the reason is
     on standard error
  2  the command line is wrong
  3  the time limit passed
  128 and the number of the signal that ended the program

Qt's own options, such as -platform NAME, are understood too.
)";

const std::array kLogLevels{std::pair{"debug", LogLevel::Debug}, std::pair{"info", LogLevel::Info},
                            std::pair{"warn", LogLevel::Warn}, std::pair{"error", LogLevel::Error}};

// What is about windows and pictures.
const std::array kShowingOptions{"new",        "scene",  "play",       "fullscreen", "size", "camera",
                                 "look-at",    "still",  "grid",       "vsync",      "gpu",  "list-gpus",
                                 "validation", "frames", "screenshot", "stats"};

// Taken from the command line by Qt only later, when the application object with windows is made. Two more,
// "platform" and "name", are ours where nothing but an export is wanted.
const std::array kQtOptions{"platformpluginpath",
                            "platformtheme",
                            "plugin",
                            "qwindowgeometry",
                            "qwindowtitle",
                            "qwindowicon",
                            "style",
                            "stylesheet",
                            "display",
                            "geometry",
                            "session",
                            "title",
                            "icon"};

void describeOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(kDescription);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addPositionalArgument("DIR", "The project's folder, as with --project.", "[DIR]");
    parser.addOptions({
        {{"h", "help"}, "Print this help and quit."},
        {{"v", "version"}, "Print the version and quit."},
        {"project", "Open the project in DIR.", "DIR"},
        {"new", "First create a project called NAME, in --project's folder or in the user's projects folder.",
         "NAME"},
        {"scene", "Show this scene of the project instead of its default scene.", "FILE"},
        {"play", "Play the project: the game alone, no editor around it."},
        {"build", "Build the project's behaviours without a window and quit."},
        {"export",
         "Export the game without a window to DIR, a new or empty folder, and quit; builds the behaviours "
         "first.",
         "DIR"},
        {"platform", "With --export: the platform to export for, for example windows-x64; else this one.",
         "ID"},
        {"name", "With --export: the game's name; else the project's.", "NAME"},
        {"fullscreen", "Fill the screen."},
        {"size", "Size of the window, for example 1280x800.", "WxH"},
        {"camera", "Where the camera stands, in metres, for example 4,2,6.", "X,Y,Z"},
        {"look-at", "What the camera looks at, in metres.", "X,Y,Z"},
        {"still", "The camera does not circle."},
        {"grid", "Show the ground grid or not.", "on|off"},
        {"vsync", "Wait for the display before showing a frame, or not.", "on|off"},
        {"gpu", "Use the GPU with this number; see --list-gpus.", "N"},
        {"list-gpus", "List the GPUs and quit."},
        {"validation", "Check every use of Vulkan: --validation or --validation=on|off. Slow.", "on|off"},
        {"frames", "Quit after N frames were shown.", "N"},
        {"screenshot",
         "Write a picture of the window to FILE and quit; after --frames, else the first frame.", "FILE"},
        {"stats", "Write start-up time and frame times to FILE as JSON when quitting.", "FILE"},
        {"time-limit", "Give up after this many seconds.", "SECONDS"},
        {"log-level", "The least level that is logged: debug, info, warn or error.", "LEVEL"},
        {"log-file", "Append the log to FILE.", "FILE"},
        {"quiet", "No log on standard error."},
    });
    for (const char* name : kQtOptions) {
        QCommandLineOption option{QString::fromLatin1(name), {}, "VALUE"};
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
}

// The parser knows options with a value and without one, but none with an optional value.
QStringList withExplicitValidation(QStringList arguments) {
    for (QString& argument : arguments) {
        if (argument == "--")
            break;
        if (argument == "--validation")
            argument += "=on";
    }
    return arguments;
}

std::optional<bool> parseOnOff(const QString& text) {
    if (text == "on")
        return true;
    if (text == "off")
        return false;
    return std::nullopt;
}

template <typename Number>
std::optional<Number> parseWhole(const QString& text, Number least, Number most) {
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    if (!ok || value < static_cast<qlonglong>(least) || value > static_cast<qlonglong>(most))
        return std::nullopt;
    return static_cast<Number>(value);
}

std::optional<std::uint32_t> parseLogLevel(const QString& text) {
    for (const auto& [name, level] : kLogLevels) {
        if (text == QLatin1String(name))
            return static_cast<std::uint32_t>(level);
    }
    return std::nullopt;
}

std::optional<std::int64_t> parseSeconds(const QString& text) {
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    if (!ok || !(seconds >= 0.001 && seconds <= 1e6))
        return std::nullopt;
    return std::llround(seconds * 1000.0);
}

std::optional<std::pair<std::int32_t, std::int32_t>> parseSize(const QString& text) {
    const QStringList parts = text.split('x');
    if (parts.size() != 2)
        return std::nullopt;
    const auto width = parseWhole<std::int32_t>(parts[0], 160, 16384);
    const auto height = parseWhole<std::int32_t>(parts[1], 120, 16384);
    if (!width || !height)
        return std::nullopt;
    return std::pair{*width, *height};
}

std::optional<QString> parseText(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::optional<QString> parseGameName(const QString& text) {
    return Project::isValidName(text.toStdString()) ? std::optional(text) : std::nullopt;
}

// A point stays text in the options; here it is only looked at.
std::optional<QString> parsePointText(const QString& text) {
    return parsePoint(text) ? std::optional(text) : std::nullopt;
}

// Reads the values that are there and keeps the first complaint.
class ValueReader final {
public:
    explicit ValueReader(const QCommandLineParser& parser) : parser_(parser) {}

    // parse makes an optional value of the text; wanted says in words what it accepts.
    template <typename Parse, typename Field>
    void read(const QString& option, const QString& wanted, Parse parse, Field& field) {
        if (!parser_.isSet(option))
            return;
        const QString text = parser_.value(option);
        if (auto value = parse(text))
            field = *std::move(value);
        else
            complain(QString("--%1: \"%2\" is not %3").arg(option, text, wanted));
    }

    void complain(const QString& problem) {
        if (problem_.isEmpty())
            problem_ = problem;
    }

    [[nodiscard]] const QString& problem() const { return problem_; }

private:
    const QCommandLineParser& parser_;
    QString problem_;
};

void readValues(ValueReader& reader, app::AppOptions& options) {
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    reader.read("project", "a folder", parseText, options.projectDir);
    reader.read("new", "a project name", parseText, options.newProjectName);
    reader.read("scene", "a file", parseText, options.scene);
    reader.read("camera", "a point such as 4,2,6", parsePointText, options.cameraEye);
    reader.read("look-at", "a point such as 0,1,0", parsePointText, options.cameraTarget);
    reader.read("grid", "\"on\" or \"off\"", parseOnOff, options.grid);
    reader.read("vsync", "\"on\" or \"off\"", parseOnOff, options.vsync);
    reader.read("validation", "\"on\" or \"off\"", parseOnOff, options.validation);
    reader.read(
        "gpu", "a whole number from 0 to 255",
        [](const QString& text) { return parseWhole<std::uint32_t>(text, 0, 255); }, options.gpu);
    reader.read(
        "frames", "a whole number from 1", [](const QString& text) { return parseWhole(text, 1, kMost); },
        options.frames);
    reader.read("screenshot", "a file", parseText, options.screenshotFile);
    reader.read("stats", "a file", parseText, options.statsFile);
    reader.read("time-limit", "a number of seconds from 0.001 to 1000000", parseSeconds, options.timeLimitMs);
    reader.read("log-level", "one of \"debug\", \"info\", \"warn\" and \"error\"", parseLogLevel,
                options.logLevel);
    reader.read("log-file", "a file", parseText, options.logFile);

    std::pair<std::int32_t, std::int32_t> size{};
    reader.read("size", "a size from 160x120 to 16384x16384", parseSize, size);
    std::tie(options.windowWidth, options.windowHeight) = size;
}

void readExport(ValueReader& reader, const QCommandLineParser& parser, ExportChoice& exporting) {
    if (!parser.isSet("export"))
        return;
    reader.read("export", "a folder", parseText, exporting.destination);
    reader.read("platform", "a platform", parseText, exporting.platform);
    reader.read("name", "a name of up to 64 letters, digits, spaces, '-' and '_'", parseGameName,
                exporting.name);
}

// What shows nothing goes with nothing that is shown.
void refuseShowing(ValueReader& reader, const QCommandLineParser& parser, const char* alone) {
    for (const char* option : kShowingOptions) {
        if (parser.isSet(alone) && parser.isSet(option))
            reader.complain(QString("--%1 shows nothing: it does not go with --%2").arg(alone, option));
    }
}

// What the options must agree on, whatever each one says.
void checkTogether(ValueReader& reader, CommandLine& commandLine, bool projectNamed) {
    app::AppOptions& options = commandLine.options;
    const bool exporting = !commandLine.exporting.destination.isEmpty();
    const bool anyProject = !options.projectDir.isEmpty() || !options.newProjectName.isEmpty();
    const qsizetype folders = projectNamed ? 0 : 1;
    if (options.arguments.size() > folders)
        reader.complain(QString("\"%1\" is one argument too many").arg(options.arguments[folders]));
    if (options.play && !options.newProjectName.isEmpty())
        reader.complain("--new opens the editor: it does not go with --play");
    if (!anyProject && options.play)
        reader.complain("--play needs a project: name its folder with --project");
    if (!anyProject && options.build)
        reader.complain("--build needs a project: name its folder with --project");
    if (!anyProject && exporting)
        reader.complain("--export needs a project: name its folder with --project");
    if (!anyProject && (options.frames > 0 || !options.screenshotFile.isEmpty()))
        reader.complain("--frames and --screenshot need a project: name its folder with --project");
    if (!options.cameraEye.isEmpty() && parsePoint(options.cameraEye) == parsePoint(options.cameraTarget))
        reader.complain(QString("--look-at: \"%1\" is where the camera stands").arg(options.cameraTarget));
    if (!options.screenshotFile.isEmpty() && options.frames == 0)
        options.frames = 1;
}

} // namespace

std::optional<glm::vec3> parsePoint(const QString& text) {
    constexpr float kFarthest = 1e6F;
    const QStringList parts = text.split(',');
    if (parts.size() != 3)
        return std::nullopt;
    glm::vec3 point{0.0F};
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        point[i] = parts[i].trimmed().toFloat(&ok);
        if (!ok || !(std::abs(point[i]) <= kFarthest))
            return std::nullopt;
    }
    return point;
}

std::expected<CommandLine, CommandLineStop> parseCommandLine(const QStringList& arguments) {
    const auto usage = [](const QString& problem) {
        return std::unexpected(CommandLineStop{
            ExitStatus::Usage, QString("tarvik-editor: %1\nSee tarvik-editor --help.\n").arg(problem)});
    };

    QCommandLineParser parser;
    describeOptions(parser);
    if (!parser.parse(withExplicitValidation(arguments)))
        return usage(parser.errorText());
    if (parser.isSet("help"))
        return std::unexpected(CommandLineStop{ExitStatus::Done, parser.helpText() + kExitStatuses});
    if (parser.isSet("version")) {
        return std::unexpected(CommandLineStop{
            ExitStatus::Done, QString("tarvik-editor %1\n").arg(QCoreApplication::applicationVersion())});
    }

    CommandLine commandLine;
    app::AppOptions& options = commandLine.options;
    ValueReader reader(parser);
    readValues(reader, options);
    options.play = parser.isSet("play");
    options.fullScreen = parser.isSet("fullscreen");
    options.still = parser.isSet("still");
    options.quiet = parser.isSet("quiet");
    options.listGpus = parser.isSet("list-gpus");
    options.arguments = parser.positionalArguments();
    options.build = parser.isSet("build");
    readExport(reader, parser, commandLine.exporting);
    refuseShowing(reader, parser, "build");
    refuseShowing(reader, parser, "export");
    const bool projectNamed = parser.isSet("project");
    if (!projectNamed && !options.arguments.isEmpty())
        options.projectDir = options.arguments.front();
    checkTogether(reader, commandLine, projectNamed);
    if (!reader.problem().isEmpty())
        return usage(reader.problem());
    return commandLine;
}

} // namespace tarvik::editor
