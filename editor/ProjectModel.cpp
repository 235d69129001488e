#include "ProjectModel.hpp"

#include "DisplayText.hpp"
#include "ProjectInspector.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ProjectThumbnail.hpp>
#include <tarvik/app/RelativeTime.hpp>

#include <QDir>
#include <QGuiApplication>

#include <algorithm>

namespace tarvik::editor {
namespace {

constexpr qsizetype kPictureMemory = 128 << 20;
constexpr QSize kThumbnail(320, 200);
constexpr qsizetype kTipName = 80; // letters: a tip breaks no word, and a long one would leave the screen

QString nameOf(const RecentProject& project) {
    return oneLine(QString::fromStdString(project.name));
}

QString folderOf(const RecentProject& project) {
    return oneLine(QDir::toNativeSeparators(app::toQString(project.path)));
}

} // namespace

ProjectModel::ProjectModel(ProjectInspector& inspector, QObject* parent)
    : QAbstractListModel(parent),
      inspector_(inspector),
      seen_(kPictureMemory) {
    connect(&inspector, &ProjectInspector::inspected, this, &ProjectModel::take);
}

void ProjectModel::setProjects(std::span<const RecentProject> projects) {
    beginResetModel();
    projects_.assign(projects.begin(), projects.end());
    for (const QString& folder : seen_.keys())
        seen_.object(folder)->upToDate = false;
    endResetModel();
}

const RecentProject& ProjectModel::project(int row) const {
    return projects_.at(static_cast<std::size_t>(row));
}

bool ProjectModel::isMissing(const std::filesystem::path& folder) const {
    const Seen* seen = seen_.object(app::toQString(folder));
    return seen != nullptr && seen->missing;
}

QSize ProjectModel::thumbnailSize() {
    return kThumbnail * qGuiApp->devicePixelRatio();
}

int ProjectModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(projects_.size());
}

QVariant ProjectModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const RecentProject& project = this->project(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return nameOf(project);
    case Qt::ToolTipRole:
        return QString("<qt>%1<br>%2</qt>")
            .arg(oneLine(QString::fromStdString(project.name), kTipName).toHtmlEscaped(),
                 wrappable(folderOf(project)).toHtmlEscaped());
    case Qt::AccessibleTextRole:
        return spoken(project);
    case FolderRole:
        return folderOf(project);
    case OpenedRole:
        return app::relativeTimeString(project.lastOpenedUnix);
    case SearchRole:
        return QString(nameOf(project) + '\n' + folderOf(project));
    case PictureRole:
        return picture(project);
    case MissingRole:
        return isMissing(project.path);
    default:
        return {};
    }
}

QPixmap ProjectModel::picture(const RecentProject& project) const {
    const QString key = app::toQString(project.path);
    Seen* seen = seen_.object(key);
    if (seen == nullptr) {
        const QSize size = thumbnailSize();
        seen = new Seen;
        seen_.insert(key, seen, 4 * qsizetype{size.width()} * size.height());
    }
    if (!seen->upToDate) {
        seen->upToDate = true;
        inspector_.inspect(project.path, thumbnailSize());
    }
    return seen->picture;
}

void ProjectModel::take(const std::filesystem::path& folder, const ProjectState& state) {
    Seen* seen = seen_.object(app::toQString(folder));
    const auto found = std::ranges::find(projects_, folder, &RecentProject::path);
    if (seen == nullptr || found == projects_.end())
        return;
    seen->missing = state.missing;
    if (!state.thumbnail.isNull())
        seen->picture = QPixmap::fromImage(state.thumbnail);
    else if (seen->picture.isNull())
        seen->picture = app::placeholderThumbnail(QString::fromStdString(found->name), thumbnailSize());
    const QModelIndex changed = index(static_cast<int>(found - projects_.begin()));
    Q_EMIT dataChanged(changed, changed);
}

QString ProjectModel::spoken(const RecentProject& project) const {
    const QString state =
        isMissing(project.path) ? tr("folder not found") : app::relativeTimeString(project.lastOpenedUnix);
    return tr("%1, %2, %3").arg(nameOf(project), state, folderOf(project));
}

} // namespace tarvik::editor
