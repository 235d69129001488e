#include "Background.hpp"
#include "BuildCommand.hpp"
#include "CommandLine.hpp"
#include "EditorStyle.hpp"
#include "ExportCommand.hpp"
#include "LogFileSink.hpp"
#include "MainWindow.hpp"
#include "PlayWindow.hpp"
#include "Session.hpp"
#include "TerminationSignals.hpp"

#include <tarvik/app/Preferences.hpp>
#include <tarvik/app/Theme.hpp>
#include <tarvik/core/ConsoleSink.hpp>
#include <tarvik/core/Logger.hpp>
#include <tarvik/renderer/Instance.hpp>

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <exception>

namespace {

using namespace tarvik;
using namespace tarvik::editor;

constexpr std::chrono::seconds kFarewell{2}; // for the picture of the project that was closed last

int say(ExitStatus status, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()),
                status == ExitStatus::Done ? stdout : stderr);
    return static_cast<int>(status);
}

std::expected<CommandLine, CommandLineStop> readCommandLine(int argc, char** argv) {
    // Without windows: the command line is understood where there is no display.
    const QCoreApplication application(argc, argv);
    return parseCommandLine(QCoreApplication::arguments());
}

int listGpus() {
    try {
        QString text;
        for (const rhi::Gpu& gpu : rhi::Instance::availableGpus()) {
            text += QString("%1  %2 (%3)\n")
                        .arg(QString::number(gpu.index), QString::fromStdString(gpu.name),
                             QString::fromStdString(gpu.kind));
        }
        return say(ExitStatus::Done, text);
    } catch (const std::exception& e) {
        return say(ExitStatus::Failed, QString("tarvik-editor: %1\n").arg(QString::fromUtf8(e.what())));
    }
}

int run(int argc, char** argv, app::AppOptions options, const QElapsedTimer& sinceStart) {
    // Siblings of the viewport that became native windows could hide it.
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QApplication application(argc, argv);
    const TerminationSignals termination;
    applyEditorStyle(application);
    QApplication::setWindowIcon(app::theme::icon("logo"));
    app::Preferences::load().applyTo(options);

    Session session(options, sinceStart);
    if (options.play) {
        PlayWindow window(session);
        window.play();
        QApplication::exec();
    } else {
        MainWindow window(session);
        window.start();
        QApplication::exec();
        if (termination.exitStatus() != 0)
            window.close(); // which leaves the project's picture and the window's layout
    }
    const int status = session.finish();
    finishBackground(kFarewell);
    return termination.exitStatus() != 0 ? termination.exitStatus() : status;
}

bool isExport(const CommandLine& commandLine) {
    return !commandLine.exporting.destination.isEmpty();
}

int runWithoutWindow(int argc, char** argv, const CommandLine& commandLine) {
    const QCoreApplication application(argc, argv);
    const TerminationSignals termination;
    return isExport(commandLine) ? exportProject(commandLine, termination)
                                 : buildProject(commandLine.options, termination);
}

} // namespace

int main(int argc, char** argv) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    QCoreApplication::setOrganizationName("Tarvik");
    QCoreApplication::setApplicationName("tarvik-editor");
    QCoreApplication::setApplicationVersion(TARVIK_VERSION);

    const auto commandLine = readCommandLine(argc, argv);
    if (!commandLine)
        return say(commandLine.error().status, commandLine.error().text);
    const app::AppOptions& options = commandLine->options;
    const bool windowless = options.build || isExport(*commandLine);

    Logger& logger = Logger::instance();
    logger.setThreshold(static_cast<LogLevel>(options.logLevel));
    // What is to be said of a build or an export, the command says itself.
    if (!options.quiet && !windowless)
        logger.addSink(std::make_shared<ConsoleSink>());
    if (!options.logFile.isEmpty()) {
        auto sink = std::make_shared<LogFileSink>(options.logFile);
        if (!sink->problem().isEmpty())
            return say(ExitStatus::Failed, QString("tarvik-editor: %1\n").arg(sink->problem()));
        logger.addSink(std::move(sink));
    }
    if (windowless)
        return runWithoutWindow(argc, argv, *commandLine);
    return options.listGpus ? listGpus() : run(argc, argv, options, sinceStart);
}
