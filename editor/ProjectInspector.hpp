#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>

#include <filesystem>
#include <set>
#include <stop_token>

class QThreadPool;

namespace tarvik::editor {

// What a project's folder holds.
struct ProjectState {
    bool missing = false; // no project
    QImage thumbnail;     // null for none
};

// Looks at project folders on threads of its own, the latest asked for first. A folder that never answers
// costs a thread: however many there are, they hold up neither the others for long nor the end of the
// program.
class ProjectInspector final : public QObject {
    Q_OBJECT

public:
    ProjectInspector();
    ~ProjectInspector() override;

    // One look at a time: while an answer for the folder is due, nothing more is asked.
    void inspect(const std::filesystem::path& folder, QSize thumbnail);

Q_SIGNALS:
    void inspected(const std::filesystem::path& folder, const ProjectState& state);

private:
    void addThreads();

    QThreadPool* pool_;
    std::stop_source stop_;
    std::set<std::filesystem::path> pending_;
    QTimer stall_;     // runs out when no answer came for a while
    int priority_ = 0; // of the latest
};

} // namespace tarvik::editor
