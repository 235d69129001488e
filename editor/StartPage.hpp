#pragma once

#include <tarvik/project/ProjectRegistry.hpp>

#include <QWidget>

#include <span>

class QLabel;
class QListWidget;

namespace tarvik::editor {

// What the editor shows without a project: the recent projects, and the ways to a new or another one.
class StartPage final : public QWidget {
    Q_OBJECT

public:
    explicit StartPage(QWidget* parent = nullptr);

    void setProjects(std::span<const RecentProject> projects);
    // Something the user should know before opening a project; empty for nothing.
    void setNotice(const QString& text);

Q_SIGNALS:
    void newRequested();
    void openRequested();
    void projectChosen(const QString& folder);
    void removalRequested(const QString& folder);

private:
    [[nodiscard]] QWidget* createGreeting(QWidget* parent);
    [[nodiscard]] QWidget* createRecent(QWidget* parent);

    QListWidget* list_ = nullptr;
    QLabel* empty_ = nullptr;
    QLabel* notice_ = nullptr;
};

} // namespace tarvik::editor
