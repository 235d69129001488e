#pragma once

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tarvik::test {

// Runs the event loop until done() holds or the time is up; returns whether it held. It is not asked again.
inline bool pumpUntil(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer look;
    bool held = false;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        held = held || done();
        if (held)
            loop.quit();
    });
    look.start(1);
    QTimer::singleShot(std::chrono::seconds(20), &loop, &QEventLoop::quit);
    loop.exec();
    return held;
}

} // namespace tarvik::test
