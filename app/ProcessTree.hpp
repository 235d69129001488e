#pragma once

#include <QProcess>

#include <memory>

namespace tarvik::app {

// A child process together with all that it starts: a build tool that is killed alone leaves the compilers
// that it started behind. Only what makes itself a daemon escapes.
class ProcessTree final : public QProcess {
public:
    explicit ProcessTree(QObject* parent);
    ProcessTree(const ProcessTree&) = delete;
    ProcessTree& operator=(const ProcessTree&) = delete;
    // Ends all of a child that still runs, within 3 s; what can clean up after itself gets a moment for it.
    ~ProcessTree() override;

    void launch(const QString& program, const QStringList& arguments);

private:
    void end();

    struct Members; // what the platform keeps of the processes
    std::unique_ptr<Members> members_;
};

} // namespace tarvik::app
