#pragma once

#include <tarvik/project/ProjectRegistry.hpp>

#include <QObject>

class QMenu;

namespace tarvik {
class Project;
}

namespace tarvik::editor {

class Hub;
class OpeningBar;
class Session;

// The list of recent projects. The hub and a menu show it and let it be changed; every change is saved at
// once.
class RecentProjects final : public QObject {
    Q_OBJECT

public:
    // All are borrowed.
    RecentProjects(Session& session, Hub& hub, OpeningBar& bar);

    // The project was opened or renamed.
    void touch(const Project& project);

    // Shows the list in the hub, and what went wrong with it.
    void showInHub();
    // Shows the newest of the list in the menu.
    void fill(QMenu& menu);

Q_SIGNALS:
    // From the menu.
    void chosen(const tarvik::RecentProject& project);

private:
    void forget(const RecentProject& project);
    void remember(const RecentProject& project);
    void relocate(const RecentProject& project, const QString& folder);
    void change();

    Session& session_;
    Hub& hub_;
    OpeningBar& bar_;
};

} // namespace tarvik::editor
