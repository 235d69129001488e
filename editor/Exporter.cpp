#include "Exporter.hpp"

#include "StagedExport.hpp"

#include <tarvik/app/Paths.hpp>

#include <chrono>
#include <exception>
#include <utility>

namespace tarvik::editor {

struct Exporter::Progress {
    app::ExportProgress copied;
    std::atomic<std::uint64_t> total{0};
};

namespace {

constexpr std::chrono::milliseconds kLook{50};

ExportOutcome runExport(app::GameExport request, app::ExportProgress& copied,
                        std::atomic<std::uint64_t>& total) {
    ExportOutcome outcome;
    std::vector<std::string> warnings;
    request.warnings = &warnings;
    try {
        const auto launcher = exportStaged(request, copied, total);
        if (launcher)
            outcome.launcher = app::toQString(*launcher);
        else if (!copied.cancelled)
            outcome.reason = QString::fromStdString(launcher.error().message);
    } catch (const std::exception& e) {
        outcome.reason = QString::fromUtf8(e.what());
    }
    for (const std::string& warning : warnings)
        outcome.warnings += QString::fromStdString(warning);
    return outcome;
}

} // namespace

Exporter::Exporter(QObject* parent) : QObject(parent) {
    clock_.setInterval(kLook);
    connect(&clock_, &QTimer::timeout, this, &Exporter::look);
}

Exporter::~Exporter() {
    cancel();
    if (busy())
        outcome_.wait();
}

void Exporter::start(app::GameExport request) {
    progress_ = std::make_shared<Progress>();
    outcome_ = std::async(std::launch::async, [progress = progress_, request = std::move(request)] {
        return runExport(request, progress->copied, progress->total);
    });
    clock_.start();
}

void Exporter::cancel() {
    if (progress_)
        progress_->copied.cancelled = true;
}

void Exporter::look() {
    const bool done = outcome_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    Q_EMIT progressed(progress_->copied.done, progress_->total);
    if (!done)
        return;
    clock_.stop();
    Q_EMIT finished(outcome_.get());
}

} // namespace tarvik::editor
