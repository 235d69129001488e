#include "RecentProjects.hpp"

#include "DisplayText.hpp"
#include "Hub.hpp"
#include "OpeningBar.hpp"
#include "Session.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/Paths.hpp>
#include <tarvik/project/Project.hpp>

#include <QMenu>

#include <ranges>

namespace tarvik::editor {
namespace {

constexpr int kShown = 12;   // in the menu; the hub has all
constexpr int kLongest = 40; // letters of a name
constexpr int kWidest = 480; // pixels of an entry

} // namespace

RecentProjects::RecentProjects(Session& session, Hub& hub, OpeningBar& bar)
    : session_(session),
      hub_(hub),
      bar_(bar) {
    connect(&hub, &Hub::removalRequested, this, &RecentProjects::forget);
    connect(&hub, &Hub::restoreRequested, this, &RecentProjects::remember);
    connect(&hub, &Hub::located, this, &RecentProjects::relocate);
}

void RecentProjects::touch(const Project& project) {
    app::AppContext& context = session_.context();
    context.registry.touch(project.rootDir(), project.name());
    context.saveRecentProjects();
}

void RecentProjects::showInHub() {
    app::AppContext& context = session_.context();
    hub_.setProjects(context.registry.projects());
    QStringList notices;
    for (const app::UiLogEntry& entry : context.logBridge->history()) {
        if (entry.category == "Hub" && entry.level >= LogLevel::Warn)
            notices += oneLine(entry.message);
    }
    notices.removeDuplicates();
    hub_.setNotice(notices.join('\n'));
}

void RecentProjects::fill(QMenu& menu) {
    menu.clear();
    for (const RecentProject& recent : session_.context().registry.projects() | std::views::take(kShown)) {
        const bool missing = hub_.isMissing(recent.path);
        const QString whole = oneLine(QString::fromStdString(recent.name), kLongest) + " – " +
                              oneLine(app::toQString(recent.path));
        const QString text =
            menu.fontMetrics().elidedText(whole, Qt::ElideMiddle, kWidest).replace('&', "&&");
        QAction* action = menu.addAction(missing ? tr("%1 (missing)").arg(text) : text);
        action->setEnabled(!missing);
        connect(action, &QAction::triggered, this, [this, recent] { Q_EMIT chosen(recent); });
    }
    if (menu.isEmpty())
        menu.addAction(tr("No Recent Projects"))->setEnabled(false);
}

void RecentProjects::forget(const RecentProject& project) {
    session_.context().registry.remove(project.path);
    change();
}

void RecentProjects::remember(const RecentProject& project) {
    session_.context().registry.put(project);
    change();
}

void RecentProjects::relocate(const RecentProject& project, const QString& folder) {
    const auto take = [this, project](const std::expected<Project, Error>& found) {
        if (!found) {
            session_.reportFailure(&hub_, QString::fromStdString(found.error().message));
            return;
        }
        ProjectRegistry& registry = session_.context().registry;
        registry.remove(project.path);
        registry.put({found->rootDir(), found->name(), project.lastOpenedUnix});
        change();
    };
    bar_.await(
        folder, [path = app::toPath(folder)] { return Project::open(path); }, take);
}

void RecentProjects::change() {
    session_.context().saveRecentProjects();
    showInHub();
}

} // namespace tarvik::editor
