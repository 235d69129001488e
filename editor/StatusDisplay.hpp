#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QLabel;
class QStatusBar;

namespace tarvik::editor {

class ProjectBuild;

// What a status bar tells all the time: the state of the behaviours' build, the frame rate and the GPU.
class StatusDisplay final : public QObject {
    Q_OBJECT

public:
    explicit StatusDisplay(QStatusBar& bar);

    void startRendering(const QString& gpu);
    void stopRendering();
    void countFrame() { ++frames_; }
    [[nodiscard]] QString gpu() const; // empty while nothing is rendered

    // Borrowed; null when no project is open.
    void watch(ProjectBuild* build);

private:
    void showFrameRate();

    QLabel* build_;
    QLabel* frameRate_;
    QLabel* gpu_;
    QTimer timer_;
    QElapsedTimer clock_;
    int frames_ = 0;
    ProjectBuild* watched_ = nullptr;
};

} // namespace tarvik::editor
