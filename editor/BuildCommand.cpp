#include "BuildCommand.hpp"

#include "CommandOutput.hpp"
#include "DiagnosticText.hpp"
#include "MovedBuildTree.hpp"
#include "ProjectPlace.hpp"
#include "TerminationSignals.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>
#include <tarvik/project/Project.hpp>

#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace tarvik::editor {
namespace {

void writeDiagnostics(bool ok, const QString& output) {
    bool reasonKnown = ok;
    for (const app::BuildDiagnostic& diagnostic : app::BuildDiagnostics(output).list()) {
        writeText(stderr, asLine(diagnostic) + '\n');
        reasonKnown = reasonKnown || diagnostic.severity == app::BuildDiagnostic::Severity::Error;
    }
    if (!reasonKnown)
        fail(ExitStatus::Failed, output.trimmed());
}

} // namespace

int buildProject(const app::AppOptions& options, const TerminationSignals& termination) {
    const auto project = Project::open(app::toPath(options.projectDir));
    if (!project)
        return fail(ExitStatus::Failed, QString("no project can be opened in %1: %2")
                                            .arg(QDir::toNativeSeparators(options.projectDir),
                                                 QString::fromStdString(project.error().message)));

    const QString root = app::toQString(project->rootDir());
    if (const QString problem = problemWithProjectPlace(root); !problem.isEmpty())
        return fail(ExitStatus::Failed, problem);

    removeMovedBuildTree(root);
    app::ScriptBuilder builder(root);
    const auto tell = [&options](const QString& line) {
        if (!options.quiet)
            writeText(stdout, line + '\n');
    };
    tell(QString("Building %1").arg(QDir::toNativeSeparators(builder.scriptsDir())));

    constexpr std::int64_t kLongest = std::numeric_limits<int>::max();
    const std::int64_t limit = options.timeLimitMs > 0 ? std::min(options.timeLimitMs, kLongest) : kLongest;
    QElapsedTimer clock;
    clock.start();
    bool finished = false;
    QObject::connect(&builder, &app::ScriptBuilder::buildFinished, &builder,
                     [&finished] { finished = true; });
    QString output;
    const bool ok = builder.buildBlocking(&output, static_cast<int>(limit));
    const double seconds = static_cast<double>(clock.elapsed()) / 1000.0;
    if (termination.exitStatus() != 0) {
        fail(ExitStatus::Failed, "the build was interrupted");
        return termination.exitStatus();
    }
    if (!finished)
        return fail(ExitStatus::TimeLimit, QString("--time-limit: gave up after %1 s").arg(seconds));

    writeDiagnostics(ok, output);
    if (!ok)
        return static_cast<int>(ExitStatus::Failed);
    tell(QString("Built %1 in %2 s")
             .arg(QDir::toNativeSeparators(builder.libraryPath()))
             .arg(seconds, 0, 'f', 1));
    return static_cast<int>(ExitStatus::Done);
}

} // namespace tarvik::editor
