#pragma once

#include <tarvik/app/Export.hpp>
#include <tarvik/core/LogSink.hpp>

#include <QDateTime>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

namespace tarvik::app {

// One log line as the user interface sees it.
struct UiLogEntry {
    LogLevel level = LogLevel::Info;
    QString category;
    QString message; // bytes that were not UTF-8 are replacement characters
    QDateTime time;  // local time, to the millisecond
};

// The recent log lines, and a signal for every new one. push, history and clearHistory are safe on any
// thread; the bridge must outlive every push.
class TARVIK_APPCOMMON_API LogBridge final : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kHistory = 5000; // lines kept

    LogBridge();
    ~LogBridge() override;

    void push(const LogMessage& msg);
    // Oldest line first.
    [[nodiscard]] std::vector<UiLogEntry> history();
    // Emits nothing: a view that shows the history clears itself.
    void clearHistory();

Q_SIGNALS:
    // Emitted on the thread that logged, after the line is in the history and with no lock held. A receiver
    // that logs about every line ends by itself when connected directly, as the logger limits the depth; over
    // a queued connection each line it logs is delivered to it in turn, without end.
    void messageLogged(const tarvik::app::UiLogEntry& entry);

private:
    std::mutex lock_;
    std::deque<UiLogEntry> history_;
};

// Hands every line of the engine's logger to a bridge, which it borrows.
class TARVIK_APPCOMMON_API QtLogSink final : public LogSink {
public:
    explicit QtLogSink(LogBridge& bridge);
    ~QtLogSink() override;
    void write(const LogMessage& msg) override;

private:
    LogBridge& bridge_;
};

} // namespace tarvik::app

Q_DECLARE_METATYPE(tarvik::app::UiLogEntry)
