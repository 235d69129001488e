#pragma once

#include <tarvik/app/GameExport.hpp>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <future>
#include <memory>

namespace tarvik::editor {

struct ExportOutcome {
    QString launcher; // empty when nothing was exported
    QString reason;   // why not; empty when it was cancelled
    QStringList warnings;
};

// Exports a game on a thread of its own, whole or not at all. Lives on the GUI thread; when it goes, so does
// what it has exported so far.
class Exporter final : public QObject {
    Q_OBJECT

public:
    explicit Exporter(QObject* parent = nullptr);
    ~Exporter() override;

    // Not while it is busy. The request's warnings come with the outcome.
    void start(app::GameExport request);
    void cancel();
    // False in receivers of finished.
    [[nodiscard]] bool busy() const { return outcome_.valid(); }

Q_SIGNALS:
    // Several times a second, in bytes. The total is not known at first: 0.
    void progressed(quint64 done, quint64 total);
    void finished(const tarvik::editor::ExportOutcome& outcome);

private:
    struct Progress;

    void look();

    std::shared_ptr<Progress> progress_;
    std::future<ExportOutcome> outcome_;
    QTimer clock_;
};

} // namespace tarvik::editor
