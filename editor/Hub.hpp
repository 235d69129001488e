#pragma once

#include "ProjectInspector.hpp"
#include "ProjectModel.hpp"
#include "ProjectTemplate.hpp"

#include <QSortFilterProxyModel>
#include <QWidget>

#include <optional>
#include <span>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QStackedWidget;

namespace tarvik::editor {

class ProjectGrid;

// What the editor shows without a project: the recent projects, and the ways to a new or another one. It
// never waits for a folder: what is in one, threads find out.
class Hub final : public QWidget {
    Q_OBJECT

public:
    explicit Hub(QWidget* parent = nullptr);

    void setProjects(std::span<const RecentProject> projects);
    // Something the user should know before opening a project; empty for nothing.
    void setNotice(const QString& text);
    // As far as is known.
    [[nodiscard]] bool isMissing(const std::filesystem::path& folder) const;
    // Asks where the project is now.
    void locate(const RecentProject& project);

Q_SIGNALS:
    void newRequested(tarvik::editor::ProjectTemplate start);
    void openRequested();
    void projectChosen(const tarvik::RecentProject& project);
    void removalRequested(const tarvik::RecentProject& project);
    // After its removal.
    void restoreRequested(const tarvik::RecentProject& project);
    // The project that was not found is said to be in that folder.
    void located(const tarvik::RecentProject& project, const QString& folder);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QWidget* createGreeting();
    [[nodiscard]] QWidget* createRecent();
    [[nodiscard]] QWidget* createEmpty();
    [[nodiscard]] QWidget* createNothingFound();
    [[nodiscard]] QWidget* createUndoBar(QWidget* parent);
    void createMenu();

    void showPage();
    void choose(const QModelIndex& index);
    void remove();
    void restore();
    void showFolder();
    void showMenu(const QPoint& globalPosition);
    void select(int row);
    [[nodiscard]] const RecentProject* current() const;

    ProjectInspector inspector_;
    ProjectModel model_;
    QSortFilterProxyModel found_;
    std::optional<RecentProject> removed_; // to be put back

    QPushButton* create_ = nullptr;
    QLabel* notice_ = nullptr;
    QWidget* caption_ = nullptr;
    QLineEdit* search_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    ProjectGrid* grid_ = nullptr;
    QWidget* empty_ = nullptr;
    QWidget* nothingFound_ = nullptr;
    QLabel* nothingFoundText_ = nullptr;
    QWidget* undoBar_ = nullptr;
    QLabel* undoText_ = nullptr;
    QMenu* menu_ = nullptr;
    QAction* locate_ = nullptr;
    QAction* show_ = nullptr;
};

} // namespace tarvik::editor
