#include "ExportCommand.hpp"

#include "BuildCommand.hpp"
#include "CommandOutput.hpp"
#include "Exporter.hpp"
#include "TerminationSignals.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>
#include <tarvik/project/Project.hpp>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLocale>

#include <algorithm>
#include <optional>

namespace tarvik::editor {
namespace {

// One line that is written over; nothing where that cannot be seen.
class ProgressLine final {
public:
    explicit ProgressLine(bool wanted) : shown_(wanted && outputIsTerminal()) {}

    void show(quint64 done, quint64 total) {
        if (!shown_ || total == 0)
            return;
        const QString text = QString("%1 % of %2")
                                 .arg(std::min(done, total) * 100 / total)
                                 .arg(QLocale().formattedDataSize(static_cast<qint64>(total)));
        writeText(stdout, '\r' + text.leftJustified(length_));
        length_ = text.size();
    }

    void clear() {
        if (length_ > 0)
            writeText(stdout, '\r' + QString(length_, ' ') + '\r');
        length_ = 0;
    }

private:
    bool shown_;
    qsizetype length_ = 0;
};

std::expected<app::GameExport, QString> requestFor(const CommandLine& commandLine) {
    const QString& folder = commandLine.options.projectDir;
    const auto project = Project::open(app::toPath(folder));
    if (!project)
        return std::unexpected(
            QString("no project can be opened in %1: %2")
                .arg(QDir::toNativeSeparators(folder), QString::fromStdString(project.error().message)));
    const ExportChoice& choice = commandLine.exporting;
    app::GameExport request;
    request.projectDir = project->rootDir();
    request.name = choice.name.isEmpty() ? project->name() : choice.name.toStdString();
    request.destination = app::toPath(choice.destination);
    request.platform = choice.platform.isEmpty() ? app::hostPlatform() : choice.platform.toStdString();
    if (!Project::isValidName(request.name))
        return std::unexpected(
            QString("the project's name \"%1\" cannot name files: give the game another one with --name")
                .arg(QString::fromStdString(request.name)));
    // Before a build that may take long.
    if (const auto valid = app::exportSize(request); !valid)
        return std::unexpected(QString::fromStdString(valid.error().message));
    return request;
}

double secondsOf(const QElapsedTimer& clock) {
    return static_cast<double>(clock.elapsed()) / 1000.0;
}

} // namespace

int exportProject(const CommandLine& commandLine, const TerminationSignals& termination) {
    QElapsedTimer clock;
    clock.start();
    app::AppOptions options = commandLine.options;
    const auto request = requestFor(commandLine);
    if (!request)
        return fail(ExitStatus::Failed, request.error());
    const bool hasModule = app::ScriptBuilder(app::toQString(request->projectDir)).hasScripts();
    if (hasModule && request->platform == app::hostPlatform()) {
        if (const int status = buildProject(options, termination); status != 0)
            return status;
    }

    const auto tell = [&options](const QString& line) {
        if (!options.quiet)
            writeText(stdout, line + '\n');
    };
    tell(QString("Exporting %1 for %2")
             .arg(QString::fromStdString(request->name), QString::fromStdString(request->platform)));
    ProgressLine line(!options.quiet);
    Exporter exporter;
    std::optional<ExportOutcome> outcome;
    QObject::connect(&exporter, &Exporter::progressed, &exporter,
                     [&line](quint64 done, quint64 total) { line.show(done, total); });
    QObject::connect(&exporter, &Exporter::finished, &exporter, [&outcome](const ExportOutcome& result) {
        outcome = result;
        QCoreApplication::quit();
    });
    if (options.timeLimitMs > 0)
        QTimer::singleShot(std::max<qint64>(options.timeLimitMs - clock.elapsed(), 0), &exporter,
                           &QCoreApplication::quit);
    QElapsedTimer copying;
    copying.start();
    exporter.start(*request);
    QCoreApplication::exec();
    line.clear();

    if (termination.exitStatus() != 0) {
        fail(ExitStatus::Failed, "the export was interrupted");
        return termination.exitStatus();
    }
    if (!outcome)
        return fail(ExitStatus::TimeLimit, QString("--time-limit: gave up after %1 s").arg(secondsOf(clock)));
    for (const QString& warning : outcome->warnings)
        writeText(stderr, QString("tarvik-editor: warning: %1\n").arg(warning));
    if (outcome->launcher.isEmpty())
        return fail(ExitStatus::Failed, outcome->reason);
    tell(QString("Exported in %1 s; the game starts with %2")
             .arg(secondsOf(copying), 0, 'f', 1)
             .arg(QDir::toNativeSeparators(outcome->launcher)));
    return static_cast<int>(ExitStatus::Done);
}

} // namespace tarvik::editor
