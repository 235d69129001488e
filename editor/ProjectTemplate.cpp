#include "ProjectTemplate.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/project/Project.hpp>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <string>

// A static library's resources have to be asked for, and from outside any namespace.
static void registerTemplates() {
    Q_INIT_RESOURCE(templates);
}

namespace tarvik::editor {
namespace {

const QString kSample = ":/templates/courtyard";
const QString kProjectFile = QString::fromStdString(std::string(Project::kFileName));

std::expected<void, Error> copyFile(const QString& from, const QString& to) {
    const auto failure = [&to](const QString& reason) {
        return makeError("{}: {}", to.toStdString(), reason.toStdString());
    };
    if (!QDir().mkpath(QFileInfo(to).path()))
        return failure("its folder cannot be made");
    QFile source(from);
    if (!source.copy(to))
        return failure(source.errorString());
    // What is built into a program is read-only, and so is its copy.
    QFile copy(to);
    if (!copy.setPermissions(copy.permissions() | QFile::WriteOwner))
        return failure(copy.errorString());
    return {};
}

std::expected<void, Error> copySample(Project& project) {
    registerTemplates();
    const QString root = app::toQString(project.rootDir());
    for (QDirIterator files(kSample, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString file = files.next();
        const QString place = file.mid(kSample.size());
        if (place == '/' + kProjectFile)
            continue;
        if (auto copied = copyFile(file, root + place); !copied)
            return copied;
    }
    QFile described(kSample + '/' + kProjectFile);
    if (!described.open(QIODevice::ReadOnly))
        return makeError("{}: {}", described.fileName().toStdString(), described.errorString().toStdString());
    const QJsonObject fields = QJsonDocument::fromJson(described.readAll()).object();
    project.setDescription(fields["description"].toString().toStdString());
    project.setDefaultScene(fields["defaultScene"].toString().toStdString());
    return project.save();
}

} // namespace

std::expected<void, Error> createProject(const std::filesystem::path& folder, const QString& name,
                                         ProjectTemplate start) {
    auto project = Project::create(folder, name.toStdString());
    if (!project)
        return std::unexpected(project.error());
    if (start == ProjectTemplate::Empty)
        return {};
    auto copied = copySample(*project);
    // The folder was empty a moment ago, and can be tried again when it is so.
    if (!copied)
        QDir(app::toQString(project->rootDir())).removeRecursively();
    return copied;
}

} // namespace tarvik::editor
