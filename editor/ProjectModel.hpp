#pragma once

#include <tarvik/project/ProjectRegistry.hpp>

#include <QAbstractListModel>
#include <QCache>
#include <QPixmap>

#include <span>
#include <vector>

namespace tarvik::editor {

class ProjectInspector;
struct ProjectState;

// The recent projects, in the registry's order. What is in a folder is found out when its picture is first
// asked for; until the answer comes the picture is null.
class ProjectModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role : int {
        FolderRole = Qt::UserRole, // as shown
        OpenedRole,                // how long ago, as shown
        SearchRole,                // all that a search looks through
        PictureRole,               // QPixmap
        MissingRole,               // bool; false until the answer came
    };

    // The inspector is borrowed.
    explicit ProjectModel(ProjectInspector& inspector, QObject* parent = nullptr);

    // Pictures are kept until newer ones are there.
    void setProjects(std::span<const RecentProject> projects);
    [[nodiscard]] const RecentProject& project(int row) const;
    [[nodiscard]] bool isMissing(const std::filesystem::path& folder) const;
    [[nodiscard]] static QSize thumbnailSize(); // in pixels

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    struct Seen {
        QPixmap picture;
        bool missing = false;
        bool upToDate = false; // or about to be
    };

    void take(const std::filesystem::path& folder, const ProjectState& state);
    [[nodiscard]] QPixmap picture(const RecentProject& project) const;
    [[nodiscard]] QString spoken(const RecentProject& project) const;

    ProjectInspector& inspector_;
    std::vector<RecentProject> projects_;
    mutable QCache<QString, Seen> seen_; // by folder; bounded by the memory of the pictures
};

} // namespace tarvik::editor
