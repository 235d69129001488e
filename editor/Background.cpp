#include "Background.hpp"

#include <QThreadPool>

#include <limits>

namespace tarvik::editor {
namespace {

// Never destroyed: that would wait for all of its threads.
QThreadPool& threads() {
    static auto* pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(std::numeric_limits<int>::max());
        return made;
    }();
    return *pool;
}

} // namespace

void startInBackground(std::function<void()> work) {
    threads().start(std::move(work));
}

bool finishBackground(std::chrono::milliseconds longest) {
    return threads().waitForDone(static_cast<int>(longest.count()));
}

} // namespace tarvik::editor
