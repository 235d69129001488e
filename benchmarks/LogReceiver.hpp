#pragma once

#include <tarvik/app/LogBridge.hpp>

#include <QObject>
#include <QString>

namespace tarvik::bench {

// Lives on the main thread, so that a line logged elsewhere reaches it through the event queue.
class LogReceiver final : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void text(const QString& /*line*/) { ++lines; }
    void entry(const app::UiLogEntry& /*line*/) { ++lines; }
    int lines = 0;
};

} // namespace tarvik::bench
