#include "Session.hpp"

#include "PictureFile.hpp"
#include "RenderFailurePanel.hpp"
#include "ViewportPane.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Snapshot.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/core/ConsoleSink.hpp>
#include <tarvik/core/JsonFile.hpp>
#include <tarvik/core/Log.hpp>

#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>
#include <QMessageBox>
#include <QTimer>

#include <algorithm>

namespace tarvik::editor {

Session::Session(app::AppOptions options, const QElapsedTimer& sinceStart)
    : options_(std::move(options)),
      sinceStart_(sinceStart),
      context_(std::make_unique<app::AppContext>(options_)) {
    if (options_.timeLimitMs > 0) {
        const std::int64_t left = std::max<std::int64_t>(options_.timeLimitMs - sinceStart_.elapsed(), 0);
        QTimer::singleShot(std::chrono::milliseconds(left), this, &Session::giveUp);
    }
}

Session::~Session() = default;

void Session::watch(ViewportPane& pane) {
    connect(&pane, &ViewportPane::frameRendered, this, [this, &pane] { countFrame(pane); });
    connect(&pane, &ViewportPane::restartRequested, this, &Session::restartRendering);
    connect(&pane, &ViewportPane::renderFailed, this, [this, &pane](const QString& reason) {
        renderingFailed_ = true;
        // A game that shows nothing says so in front.
        if (isUnattended() || options_.play)
            reportFailure(pane.window(),
                          reason + '\n' + renderFailureAdvice(reason, QGuiApplication::platformName()));
    });
}

// Quiet or not, a run that fails says why.
void Session::tell(const std::string& problem) const {
    log::error("Editor", "{}", problem);
    if (options_.quiet) {
        const std::int64_t now = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
        ConsoleSink().write({LogLevel::Error, "Editor", problem, now});
    }
}

void Session::reportFailure(QWidget* parent, const QString& text, AfterFailure after) {
    if (isUnattended()) {
        tell(text.toStdString());
        end(ExitStatus::Failed);
        return;
    }
    log::error("Editor", "{}", text.toStdString());
    auto* box = new QMessageBox(QMessageBox::Warning, QCoreApplication::applicationName(), text,
                                QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (after == AfterFailure::Quit) {
        status_ = ExitStatus::Failed;
        connect(box, &QMessageBox::finished, this, [this] { end(ExitStatus::Failed); });
    }
    // Over its parent, which may be about to be shown.
    QMetaObject::invokeMethod(
        box, [box] { box->open(); }, Qt::QueuedConnection);
}

void Session::show(QWidget& window) const {
    if (options_.windowWidth > 0)
        window.resize(options_.windowWidth, options_.windowHeight);
    if (options_.fullScreen)
        window.showFullScreen();
    else
        window.show();
}

int Session::finish() {
    if (!options_.statsFile.isEmpty()) {
        if (const auto written = writeJsonFile(app::toPath(options_.statsFile), statistics_.toJson());
            !written) {
            tell("--stats: " + written.error().message);
            if (status_ == ExitStatus::Done)
                status_ = ExitStatus::Failed;
        }
    }
    return static_cast<int>(status_);
}

bool Session::restartFailedRendering() {
    const bool failed = renderingFailed_;
    if (failed)
        restartRendering();
    return failed;
}

void Session::restartRendering() {
    renderingFailed_ = false;
    Q_EMIT contextAboutToChange();
    // The recent projects move over: they may not be on disk when the home folder is read-only.
    ProjectRegistry registry = std::move(context_->registry);
    context_ = std::make_unique<app::AppContext>(options_);
    context_->registry = std::move(registry);
    Q_EMIT contextChanged();
}

void Session::countFrame(ViewportPane& pane) {
    statistics_.frameShown(static_cast<double>(sinceStart_.nsecsElapsed()) * 1e-6);
    if (options_.frames > 0 && statistics_.frames() == options_.frames) {
        // Outside the viewport's signal.
        QMetaObject::invokeMethod(
            &pane, [this, &pane] { complete(pane); }, Qt::QueuedConnection);
    }
}

void Session::complete(ViewportPane& pane) {
    if (!options_.screenshotFile.isEmpty()) {
        if (const auto taken = takeScreenshot(pane); !taken) {
            reportFailure(nullptr, "--screenshot: " + QString::fromStdString(taken.error().message));
            return;
        }
    }
    end(ExitStatus::Done);
}

std::expected<void, Error> Session::takeScreenshot(ViewportPane& pane) const {
    if (pane.viewport() == nullptr || pane.viewport()->hasFailed())
        return makeError("{}: the scene could not be captured", options_.screenshotFile.toStdString());
    return writePicture(app::snapshotWidget(pane.window()), options_.screenshotFile);
}

void Session::giveUp() {
    tell(fmt::format("--time-limit: gave up after {} s with {} frames shown",
                     static_cast<double>(options_.timeLimitMs) / 1000.0, statistics_.frames()));
    end(ExitStatus::TimeLimit);
}

void Session::end(ExitStatus status) {
    if (status_ == ExitStatus::Done)
        status_ = status;
    // Queued, because exit() does nothing before the event loop runs.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
}

} // namespace tarvik::editor
