#pragma once

#include <tarvik/app/Export.hpp>

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringConverter>
#include <QStringList>
#include <QTimer>

namespace tarvik::app {

class ProcessTree;

// Builds the C++ behaviours in a project's Scripts folder into one loadable module, by running CMake as a
// child process. Lives on the GUI thread and may be destroyed at any time, also from a receiver of its
// signals; a running build then ends with all its processes, within 3 s.
class TARVIK_APPCOMMON_API ScriptBuilder final : public QObject {
    Q_OBJECT

public:
    // Touches nothing on disk.
    explicit ScriptBuilder(QString projectRoot, QObject* parent = nullptr);
    ~ScriptBuilder() override;

    [[nodiscard]] QString scriptsDir() const;
    [[nodiscard]] QString buildDir() const;
    // The module that the last successful build left; there may be none.
    [[nodiscard]] QString libraryPath() const;
    // For the host's copies of the module; the builder leaves it alone.
    [[nodiscard]] QString loadDir() const;
    // Absolute; empty when the headers that behaviours include are not there.
    [[nodiscard]] static QString sdkIncludeDir();

    [[nodiscard]] bool hasScripts() const;
    // Writes a behaviour's first source. error may be null.
    bool createBehaviour(const QString& className, QString* error);

    // While a build runs, another one is only queued: however often this is called, one more follows.
    void build();
    // Waits in an event loop of its own; a time limit ends the wait, not the build. error may be null; it
    // gets the build's whole output, also when true is returned.
    bool buildBlocking(QString* error, int timeoutMs);
    // False in receivers of the signals.
    [[nodiscard]] bool busy() const;

    // Builds 400 ms after the last change of a burst. Makes the Scripts folder where there is none.
    void setWatching(bool enabled);

Q_SIGNALS:
    // Both may be emitted before build() returns.
    void buildStarted();
    // Once for every buildStarted, unless the builder is destroyed first. output is all that the tools
    // printed, or why they were not started.
    void buildFinished(bool ok, const QString& output);

private:
    bool prepareSources(QString* error);
    [[nodiscard]] QStringList configureArguments() const;
    void runNext();
    void readOutput();
    void releaseProcess();
    void finish(bool ok);
    void folderChanged(const QString& path);
    void rewatch();
    void unwatch();
    [[nodiscard]] QMap<QString, QDateTime> findSources() const;

    QString root;
    QFileSystemWatcher watcher;
    QTimer debounce;
    bool watching = false;
    bool rebuildQueued = false;
    ProcessTree* process = nullptr; // null while no step runs
    QStringList steps;
    QString buildOutput;
    QStringDecoder decoder_{QStringConverter::System}; // of the running step
    QMap<QString, QDateTime> sources_;                 // what is watched, as it was last seen
    QSet<QString> unwatchable_;                        // told of already
};

} // namespace tarvik::app
