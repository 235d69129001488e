#include <tarvik/app/ScriptBuilder.hpp>

#include "ProcessTree.hpp"
#include "ScriptTemplates.hpp"

#include <tarvik/core/Log.hpp>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>

#include <chrono>
#include <utility>

namespace tarvik::app {

namespace {

constexpr const char* kCategory = "Script";
constexpr std::chrono::milliseconds kDebounce{400};
constexpr qsizetype kLoggedOutput = 4000; // characters

// False, so that a caller can return it.
bool fail(QString* error, const QString& message) {
    if (error)
        *error = message;
    return false;
}

// What is current keeps its time of modification, or CMake would generate everything anew.
bool writeFileIfChanged(const QString& path, const QByteArray& data, QString* error) {
    QFile current(path);
    if (current.open(QIODevice::ReadOnly) && current.readAll() == data)
        return true;
    current.close();
    // Unbuffered, so that a full disk shows here and not at the close, which reports nothing.
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered) &&
        file.write(data) == data.size())
        return true;
    return fail(error, QObject::tr("cannot write %1: %2").arg(path, file.errorString()));
}

QString absolute(const QString& folder) {
    return QDir(folder).absolutePath();
}

QString findProgram(const char* name) {
    return QStandardPaths::findExecutable(QLatin1String(name));
}

} // namespace

ScriptBuilder::ScriptBuilder(QString projectRoot, QObject* parent)
    : QObject(parent),
      root(std::move(projectRoot)) {
    debounce.setSingleShot(true);
    debounce.setInterval(kDebounce);
    connect(&debounce, &QTimer::timeout, this, &ScriptBuilder::build);
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, [this] {
        rewatch();
        debounce.start();
    });
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, &ScriptBuilder::folderChanged);
}

ScriptBuilder::~ScriptBuilder() {
    if (!process)
        return;
    process->disconnect(this); // its end is no failed build
    delete process;
}

QString ScriptBuilder::scriptsDir() const {
    return QDir(root).filePath(QStringLiteral("Scripts"));
}

QString ScriptBuilder::buildDir() const {
    return QDir(root).filePath(QStringLiteral("Saved/ScriptBuild"));
}

QString ScriptBuilder::libraryPath() const {
    return QDir(buildDir()).filePath(QStringLiteral("bin/game" TARVIK_MODULE_SUFFIX));
}

QString ScriptBuilder::loadDir() const {
    return QDir(buildDir()).filePath(QStringLiteral("loaded"));
}

QString ScriptBuilder::sdkIncludeDir() {
    const QDir beside(QCoreApplication::applicationDirPath());
    for (const QString& candidate :
         {beside.filePath(QStringLiteral("../include")), beside.filePath(QStringLiteral("include")),
          QStringLiteral(TARVIK_SDK_INCLUDE_DIR)}) {
        if (QFileInfo::exists(QDir(candidate).filePath(QStringLiteral("tarvik/Script.hpp"))))
            return absolute(candidate);
    }
    return {};
}

bool ScriptBuilder::hasScripts() const {
    return QDirIterator(scriptsDir(), {QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories)
        .hasNext();
}

bool ScriptBuilder::createBehaviour(const QString& className, QString* error) {
    static const QRegularExpression kIdentifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    if (!kIdentifier.match(className).hasMatch())
        return fail(error, tr("'%1' is not a valid C++ class name.").arg(className));
    if (!QDir().mkpath(scriptsDir()))
        return fail(error, tr("cannot create %1").arg(scriptsDir()));
    const QString file = QDir(scriptsDir()).filePath(className + QStringLiteral(".cpp"));
    if (QFileInfo::exists(file))
        return fail(error, tr("%1 already exists.").arg(file));
    return writeFileIfChanged(file, QString::fromLatin1(kNewBehaviour).arg(className).toUtf8(), error);
}

bool ScriptBuilder::prepareSources(QString* error) {
    if (sdkIncludeDir().isEmpty())
        return fail(error,
                    tr("The Tarvik SDK headers (include/tarvik/Script.hpp) are missing next to the editor."));
    const QDir folder(buildDir());
    const QDir sources(folder.filePath(QStringLiteral("src")));
    if (!QDir().mkpath(sources.path()) || !QDir().mkpath(folder.filePath(QStringLiteral("bin"))))
        return fail(error, tr("cannot create %1").arg(buildDir()));
    return writeFileIfChanged(sources.filePath(QStringLiteral("CMakeLists.txt")), kGeneratedProject, error) &&
           writeFileIfChanged(sources.filePath(QStringLiteral("tarvik_module.cpp")), kGeneratedModule, error);
}

QStringList ScriptBuilder::configureArguments() const {
    const QDir folder(buildDir());
    const QDir tree(folder.filePath(QStringLiteral("obj")));
    QStringList arguments{
        QStringLiteral("-S"),
        folder.filePath(QStringLiteral("src")),
        QStringLiteral("-B"),
        tree.path(),
        QStringLiteral("-DCMAKE_BUILD_TYPE=RelWithDebInfo"),
        QStringLiteral("-DTARVIK_SCRIPTS_DIR=") + absolute(scriptsDir()),
        QStringLiteral("-DTARVIK_SDK_INCLUDE_DIR=") + sdkIncludeDir(),
        QStringLiteral("-DTARVIK_OUTPUT_DIR=") + absolute(folder.filePath(QStringLiteral("bin"))),
    };
    // CMake refuses to change the generator of a tree.
    if (!QFileInfo::exists(tree.filePath(QStringLiteral("CMakeCache.txt"))) &&
        !findProgram("ninja").isEmpty())
        arguments << QStringLiteral("-G") << QStringLiteral("Ninja");
    return arguments;
}

void ScriptBuilder::build() {
    // Steps are there before a process is, while receivers of buildStarted run: one that asks for a build
    // must not start a second one beside this one.
    if (busy() || !steps.isEmpty()) {
        rebuildQueued = true;
        return;
    }
    steps = {QStringLiteral("configure"), QStringLiteral("build")};
    buildOutput.clear();
    const QPointer<ScriptBuilder> alive(this);
    Q_EMIT buildStarted();
    if (!alive)
        return;

    QString error;
    if (!hasScripts())
        error = tr("No scripts: add .cpp files to %1.").arg(QDir::toNativeSeparators(scriptsDir()));
    else if (findProgram("cmake").isEmpty())
        error = tr("CMake was not found. Install CMake and a C++20 compiler (GCC, Clang or Visual Studio) to "
                   "build scripts.");
    else
        prepareSources(&error);
    if (!error.isEmpty()) {
        buildOutput = error;
        finish(false);
        return;
    }
    log::info(kCategory, "building scripts in {}", scriptsDir().toStdString());
    runNext();
}

void ScriptBuilder::runNext() {
    if (steps.isEmpty()) {
        finish(true);
        return;
    }
    const QStringList arguments =
        steps.takeFirst() == QLatin1String("configure")
            ? configureArguments()
            : QStringList{QStringLiteral("--build"), QDir(buildDir()).filePath(QStringLiteral("obj")),
                          QStringLiteral("--config"), QStringLiteral("RelWithDebInfo")};
    process = new ProcessTree(this);
    process->setProcessChannelMode(QProcess::MergedChannels);
    // One for the whole step: a character can be cut in two by the end of what has come so far.
    decoder_ = QStringDecoder(QStringConverter::System);
    connect(process, &QProcess::readyRead, this, &ScriptBuilder::readOutput);
    connect(process, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus exitStatus) {
        readOutput();
        releaseProcess();
        if (exitCode == 0 && exitStatus == QProcess::NormalExit)
            runNext();
        else
            finish(false);
    });
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart || !process)
            return;
        buildOutput += tr("cannot start cmake: %1").arg(process->errorString());
        releaseProcess();
        finish(false);
    });
    // Last: a failure at once ends the build in here, and its receivers may destroy the builder.
    process->launch(findProgram("cmake"), arguments);
}

void ScriptBuilder::readOutput() {
    buildOutput += decoder_(process->readAll());
}

// Called in its own signals, so that it must outlive the builder, whose receivers may destroy it from there.
void ScriptBuilder::releaseProcess() {
    process->disconnect(this);
    process->setParent(nullptr);
    process->deleteLater();
    process = nullptr;
}

void ScriptBuilder::finish(bool ok) {
    steps.clear();
    if (ok)
        log::info(kCategory, "scripts built: {}", libraryPath().toStdString());
    else
        log::warn(kCategory, "script build failed:\n{}",
                  buildOutput.trimmed().right(kLoggedOutput).toStdString());
    // A copy, because a receiver may start the next build or destroy the builder while others still read it.
    const QString output = buildOutput;
    const QPointer<ScriptBuilder> alive(this);
    Q_EMIT buildFinished(ok, output);
    if (!alive || !std::exchange(rebuildQueued, false))
        return;
    QTimer::singleShot(0, this, &ScriptBuilder::build);
}

bool ScriptBuilder::buildBlocking(QString* error, int timeoutMs) {
    QEventLoop loop;
    bool success = false;
    bool done = false;
    connect(this, &ScriptBuilder::buildFinished, &loop, [&](bool ok, const QString& output) {
        success = ok;
        done = true;
        if (error)
            *error = output;
        loop.quit();
    });
    const QPointer<ScriptBuilder> alive(this);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    build();
    if (!done && alive)
        loop.exec();
    if (!done)
        fail(error, alive ? tr("script build timed out") : tr("script build abandoned"));
    return success && done;
}

bool ScriptBuilder::busy() const {
    return process != nullptr;
}

void ScriptBuilder::setWatching(bool enabled) {
    watching = enabled;
    if (!enabled) {
        unwatch();
        return;
    }
    QDir().mkpath(scriptsDir());
    rewatch();
}

void ScriptBuilder::folderChanged(const QString& path) {
    const auto before = sources_;
    // A watch stays with a folder that is moved away, and would miss what takes its place.
    unwatch();
    rewatch();
    // The root is watched for the scripts folder alone: whatever else a project keeps there starts no build.
    if (path != QDir(root).path() || sources_ != before)
        debounce.start();
}

void ScriptBuilder::rewatch() {
    if (!watching)
        return;
    // Until nothing new shows: what comes into a folder before the folder is watched raises no notification.
    QStringList refused;
    for (;;) {
        sources_ = findSources();
        // Parents before what they hold, for the same reason.
        QStringList missing{QDir(root).path()};
        missing += sources_.keys();
        const QStringList watched = watcher.files() + watcher.directories();
        const QSet<QString> known(watched.begin(), watched.end());
        missing.removeIf([&known](const QString& path) { return known.contains(path); });
        if (missing == refused)
            break;
        refused = watcher.addPaths(missing);
    }
    for (const QString& path : std::as_const(refused)) {
        if (unwatchable_.contains(path))
            continue;
        unwatchable_.insert(path);
        log::warn(kCategory, "cannot watch {}", path.toStdString());
    }
}

// The scripts folder and what counts in it. The times say whether another folder has taken its place.
QMap<QString, QDateTime> ScriptBuilder::findSources() const {
    QMap<QString, QDateTime> found;
    const QString folder = scriptsDir();
    if (!QFileInfo(folder).isDir())
        return found;
    found.insert(folder, {});
    QDirIterator entries(folder, {QStringLiteral("*.cpp"), QStringLiteral("*.hpp"), QStringLiteral("*.h")},
                         QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo entry = entries.nextFileInfo();
        if (!entry.isDir())
            found.insert(entry.filePath(), entry.lastModified());
        else if (!entry.isSymLink()) // nor does CMake look into those
            found.insert(entry.filePath(), {});
    }
    return found;
}

void ScriptBuilder::unwatch() {
    for (const QStringList& paths : {watcher.files(), watcher.directories()}) {
        if (!paths.isEmpty())
            watcher.removePaths(paths);
    }
}

} // namespace tarvik::app
