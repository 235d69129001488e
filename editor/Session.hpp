#pragma once

#include "CommandLine.hpp"
#include "FrameStatistics.hpp"

#include <tarvik/app/AppContext.hpp>

#include <QElapsedTimer>
#include <QObject>

#include <cstdint>
#include <memory>
#include <string>

class QWidget;

namespace tarvik::editor {

class ViewportPane;

enum class AfterFailure : std::uint8_t { GoOn, Quit };

// The run of the program: the context that its windows share, and how and when the program ends. Windows live
// shorter than the session.
class Session final : public QObject {
    Q_OBJECT

public:
    Session(app::AppOptions options, const QElapsedTimer& sinceStart);
    ~Session() override;

    [[nodiscard]] const app::AppOptions& options() const { return options_; }
    // Replaced when rendering is started afresh: see the signals.
    [[nodiscard]] app::AppContext& context() { return *context_; }
    // Starts rendering afresh if it has failed; whether it had.
    bool restartFailedRendering();
    // Nobody is there to answer: the program quits by itself.
    [[nodiscard]] bool isUnattended() const { return options_.frames > 0; }

    // Counts the pane's frames and ends the program after the last one; looks after its failures.
    void watch(ViewportPane& pane);

    // To the log and in a message box; in an unattended run to standard error, and the run fails.
    void reportFailure(QWidget* parent, const QString& text, AfterFailure after = AfterFailure::GoOn);

    // Shows the window as the options want it.
    void show(QWidget& window) const;

    // To be called when the event loop has ended; returns the exit status of the process.
    [[nodiscard]] int finish();

Q_SIGNALS:
    void contextAboutToChange(); // drop everything built on the context
    void contextChanged();

private:
    void restartRendering();
    void countFrame(ViewportPane& pane);
    void complete(ViewportPane& pane);
    void giveUp();
    void end(ExitStatus status);
    void tell(const std::string& problem) const;
    [[nodiscard]] std::expected<void, Error> takeScreenshot(ViewportPane& pane) const;

    app::AppOptions options_;
    QElapsedTimer sinceStart_;
    FrameStatistics statistics_;
    ExitStatus status_ = ExitStatus::Done;
    std::unique_ptr<app::AppContext> context_;
    bool renderingFailed_ = false; // with this context
};

} // namespace tarvik::editor
