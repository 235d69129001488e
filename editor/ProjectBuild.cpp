#include "ProjectBuild.hpp"

#include "ProjectPlace.hpp"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace tarvik::editor {

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

void ProjectBuild::setWatching(bool enabled) {
    watching_ = enabled && problemWithProjectPlace(projectRoot_).isEmpty();
    builder_->setWatching(watching_);
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
