#pragma once

#include <memory>

namespace tarvik::editor {

// While it lives, what asks the process to end (Ctrl+C, kill, a closed terminal or console) ends the event
// loops instead, so that all is put in order: the processes of a build, for one, hear nothing of a Ctrl+C by
// themselves. One at a time, within the application object's life.
class TerminationSignals final {
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

    // 128 and the number of the signal that came; 0 when none did.
    [[nodiscard]] int exitStatus() const { return exitStatus_; }

private:
    void end(int signal);

    int exitStatus_ = 0;
    struct Members; // what the platform keeps
    std::unique_ptr<Members> members_;
};

} // namespace tarvik::editor
