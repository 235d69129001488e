#include "ProjectInspector.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ProjectThumbnail.hpp>
#include <tarvik/project/Project.hpp>

#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <memory>

namespace tarvik::editor {
namespace {

using namespace std::chrono_literals;

constexpr int kThreads = 4;
constexpr auto kPatience = 500ms;
constexpr int kFarewellMs = 100;

// Gives up between two steps when it is to stop; its answer does not count then.
ProjectState inspectProject(const std::filesystem::path& folder, QSize thumbnail,
                            const std::stop_token& stop) {
    if (!Project::isIn(folder))
        return {.missing = true, .thumbnail = {}};
    if (stop.stop_requested())
        return {};
    return {.missing = false, .thumbnail = app::projectThumbnailImage(app::toQString(folder), thumbnail)};
}

} // namespace

ProjectInspector::ProjectInspector() : pool_(new QThreadPool) {
    pool_->setMaxThreadCount(kThreads);
    stall_.setInterval(kPatience);
    connect(&stall_, &QTimer::timeout, this, &ProjectInspector::addThreads);
}

ProjectInspector::~ProjectInspector() {
    stop_.request_stop();
    pool_->clear();
    // The pool's destructor would wait for a folder that never answers. Left alone, its threads end with the
    // process; they hold nothing of this object.
    if (pool_->waitForDone(kFarewellMs))
        delete pool_;
}

void ProjectInspector::inspect(const std::filesystem::path& folder, QSize thumbnail) {
    if (!pending_.insert(folder).second)
        return;
    auto promise = std::make_shared<QPromise<ProjectState>>();
    auto* watcher = new QFutureWatcher<ProjectState>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, folder] {
        watcher->deleteLater();
        pending_.erase(folder);
        stall_.start();
        if (pending_.empty()) {
            stall_.stop();
            pool_->setMaxThreadCount(kThreads);
        }
        Q_EMIT inspected(folder, watcher->result());
    });
    watcher->setFuture(promise->future());
    const auto look = [promise, folder, thumbnail, stop = stop_.get_token()] {
        promise->start();
        promise->addResult(inspectProject(folder, thumbnail, stop));
        promise->finish();
    };
    // Asked for while cards are painted, which is to be done first.
    QMetaObject::invokeMethod(
        this, [this, look] { pool_->start(look, ++priority_); }, Qt::QueuedConnection);
    if (!stall_.isActive())
        stall_.start();
}

// All threads wait for folders that do not answer; behind them may be some that would. Twice as many make
// short work of a whole dead server.
void ProjectInspector::addThreads() {
    const int enough = static_cast<int>(pending_.size()) + kThreads;
    pool_->setMaxThreadCount(std::min(2 * pool_->maxThreadCount(), enough));
}

} // namespace tarvik::editor
