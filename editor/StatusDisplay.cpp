#include "StatusDisplay.hpp"

#include "DisplayText.hpp"
#include "ProjectBuild.hpp"

#include <QLabel>
#include <QStatusBar>

namespace tarvik::editor {
namespace {

QLabel* addLabel(QStatusBar& bar, const QString& meaning) {
    auto* label = new QLabel(&bar);
    label->setTextFormat(Qt::PlainText);
    label->setAccessibleDescription(meaning); // the name is the text
    label->setContentsMargins(8, 2, 8, 2);
    bar.addPermanentWidget(label);
    return label;
}

} // namespace

StatusDisplay::StatusDisplay(QStatusBar& bar)
    : build_(addLabel(bar, tr("Build"))),
      frameRate_(addLabel(bar, tr("Frame rate"))),
      gpu_(addLabel(bar, tr("GPU"))) {
    timer_.setInterval(1000);
    connect(&timer_, &QTimer::timeout, this, &StatusDisplay::showFrameRate);
}

void StatusDisplay::startRendering(const QString& gpu) {
    frames_ = 0;
    clock_.start();
    timer_.start();
    gpu_->setText(oneLine(gpu));
}

void StatusDisplay::stopRendering() {
    timer_.stop();
    frameRate_->clear();
    gpu_->clear();
}

QString StatusDisplay::gpu() const {
    return gpu_->text();
}

void StatusDisplay::showFrameRate() {
    const double seconds = static_cast<double>(clock_.restart()) / 1000.0;
    frameRate_->setText(tr("%1 fps").arg(qRound(frames_ / seconds)));
    frames_ = 0;
}

void StatusDisplay::watch(ProjectBuild* build) {
    if (watched_ != nullptr)
        watched_->disconnect(this);
    watched_ = build;
    build_->clear();
    if (build == nullptr)
        return;
    build_->setText(tr("Nothing built yet"));
    connect(build, &ProjectBuild::started, this, [this] { build_->setText(tr("Building…")); });
    connect(build, &ProjectBuild::finished, this,
            [this](bool ok) { build_->setText(ok ? tr("Built") : tr("Build failed")); });
    connect(build, &ProjectBuild::cancelled, this, [this] { build_->setText(tr("Build cancelled")); });
}

} // namespace tarvik::editor
