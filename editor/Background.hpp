#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QPromise>

#include <chrono>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tarvik::editor {

// On a thread that has nothing else to do. One that never comes back ends with the process.
void startInBackground(std::function<void()> work);

// Gives what was started the time to end; whether all of it has. To be called when no window is left.
bool finishBackground(std::chrono::milliseconds longest);

// Has work() called in the background, however long it takes, and take(result) on this thread, unless the
// context is gone by then. work gets and gives values only.
template <typename Work, typename Take>
void inBackground(QObject* context, Work work, Take take) {
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, take = std::move(take)]() mutable {
                         watcher->deleteLater();
                         take(watcher->future().takeResult());
                     });
    watcher->setFuture(promise->future());
    startInBackground([promise, work = std::move(work)] {
        promise->start();
        promise->addResult(work());
        promise->finish();
    });
}

} // namespace tarvik::editor
