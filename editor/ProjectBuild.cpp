#include "ProjectBuild.hpp"

#include "Background.hpp"
#include "ProjectPlace.hpp"

#include <tarvik/core/Log.hpp>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <utility>

namespace tarvik::editor {
namespace {

// Watching looks at all sources on the GUI thread, several times over, now and whenever one changes. A disk
// that has been asked before should know them by heart; a far server does not. More than one try, because the
// machine may be busy.
bool listsFast(const QString& folder) {
    constexpr qint64 longest = 100; // ms
    QElapsedTimer clock;
    for (int tries = 0; tries < 3; ++tries) {
        clock.start();
        QDirIterator entries(folder, {"*.cpp", "*.hpp", "*.h"},
                             QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext() && (tries == 0 || clock.elapsed() <= longest))
            static_cast<void>(entries.nextFileInfo().lastModified());
        if (clock.elapsed() <= longest)
            return true;
    }
    log::warn("Script", "{} takes too long to list, so that changes in it are not seen: build by hand",
              folder.toStdString());
    return false;
}

} // namespace

ProjectBuild::ProjectBuild(QString projectRoot, QObject* parent)
    : QObject(parent),
      projectRoot_(std::move(projectRoot)) {
    makeBuilder();
}

ProjectBuild::~ProjectBuild() = default;

void ProjectBuild::makeBuilder() {
    builder_.reset(); // before another one works in the same folder
    builder_ = std::make_unique<app::ScriptBuilder>(projectRoot_);
    connect(builder_.get(), &app::ScriptBuilder::buildStarted, this, [this] {
        busy_ = true;
        clock_.start();
        Q_EMIT started();
    });
    connect(builder_.get(), &app::ScriptBuilder::buildFinished, this, [this](bool ok, const QString& output) {
        lastTook_ = elapsed();
        busy_ = false;
        Q_EMIT finished(ok, output);
    });
    if (watching_)
        builder_->setWatching(true);
}

void ProjectBuild::watch() {
    inBackground(
        this,
        [root = projectRoot_, sources = builder_->scriptsDir()] {
            return problemWithProjectPlace(root).isEmpty() && listsFast(sources);
        },
        [this](bool can) {
            watching_ = can;
            builder_->setWatching(can);
        });
}

void ProjectBuild::build() {
    const QString problem = problemWithProjectPlace(projectRoot_);
    if (problem.isEmpty()) {
        builder_->build();
        return;
    }
    Q_EMIT started();
    lastTook_ = {};
    Q_EMIT finished(false, problem);
}

void ProjectBuild::cancel() {
    if (!busy_)
        return;
    lastTook_ = elapsed();
    busy_ = false;
    makeBuilder();
    Q_EMIT cancelled();
}

std::chrono::milliseconds ProjectBuild::elapsed() const {
    return busy_ ? std::chrono::milliseconds(clock_.elapsed()) : lastTook_;
}

QString ProjectBuild::sourcePath(const QString& file) const {
    const QString root = builder_->buildDir();
    const QString tree = root + "/obj";
    // The compilers run in the build tree; CMake names its files from the folder that it configures.
    for (const QString& folder : {tree, root + "/src", builder_->scriptsDir()}) {
        const QString path = QDir(folder).absoluteFilePath(file);
        if (QFileInfo::exists(path))
            return QDir::cleanPath(path);
    }
    return QDir::cleanPath(QDir(tree).absoluteFilePath(file));
}

} // namespace tarvik::editor
