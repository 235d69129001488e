#include "ProcessTree.hpp"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

namespace tarvik::app {

namespace {

using namespace std::chrono_literals;

constexpr auto kLimit = 2900ms;
constexpr auto kGrace = 500ms;
constexpr auto kPause = 2ms;

// Those that still run. The processes of a build form groups of their own, and their parents may have ended
// before them: the session is what they all keep. Its leader counts before it has made the session, too.
std::vector<pid_t> running(pid_t leader) {
    std::vector<pid_t> found;
    for (const QString& name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool number = false;
        const pid_t process = name.toInt(&number);
        QFile file(QStringLiteral("/proc/%1/stat").arg(name));
        if (!number || !file.open(QIODevice::ReadOnly))
            continue;
        // "number (name) state parent group session ...", and the name can hold anything.
        const QByteArray line = file.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() < 4 || fields[0] == "Z" || fields[0] == "X")
            continue;
        if (process == leader || fields[3].toInt() == leader)
            found.push_back(process);
    }
    return found;
}

// Whether there was anybody to get it.
bool signalAll(pid_t leader, int signal) {
    const std::vector<pid_t> processes = running(leader);
    std::ranges::for_each(processes, [signal](pid_t process) { ::kill(process, signal); });
    return !processes.empty();
}

} // namespace

struct ProcessTree::Members {
    pid_t leader = 0;
};

ProcessTree::ProcessTree(QObject* parent) : QProcess(parent), members_(std::make_unique<Members>()) {
    setChildProcessModifier([] { ::setsid(); });
}

ProcessTree::~ProcessTree() {
    if (state() != NotRunning)
        end();
}

void ProcessTree::launch(const QString& program, const QStringList& arguments) {
    start(program, arguments);
    members_->leader = static_cast<pid_t>(processId());
}

// The leader is reaped last, so that its number stays taken while it is looked for.
void ProcessTree::end() {
    const QDeadlineTimer deadline(kLimit);
    const QDeadlineTimer grace(kGrace);
    signalAll(members_->leader, SIGTERM);
    while (!grace.hasExpired() && !running(members_->leader).empty())
        std::this_thread::sleep_for(kPause);
    // What is found may have started another one meanwhile.
    while (!deadline.hasExpired() && signalAll(members_->leader, SIGKILL))
        std::this_thread::sleep_for(kPause);
    waitForFinished(static_cast<int>(std::max<qint64>(deadline.remainingTime(), 1)));
}

} // namespace tarvik::app
