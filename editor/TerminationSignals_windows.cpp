#include "TerminationSignals.hpp"

#include <QCoreApplication>
#include <QMutex>
#include <QObject>

#include <windows.h>

#include <csignal>
#include <functional>

namespace tarvik::editor {
namespace {

QMutex mutex;
QObject* receiver = nullptr;
std::function<void(int)> receive;

// On a thread of the system's own, which ends the process when this returns from one of the latter three.
BOOL WINAPI tell(DWORD event) {
    {
        const QMutexLocker lock(&mutex);
        if (receiver == nullptr)
            return FALSE;
        const int signal = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? SIGINT : SIGTERM;
        QMetaObject::invokeMethod(
            receiver, [to = receive, signal] { to(signal); }, Qt::QueuedConnection);
    }
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

struct TerminationSignals::Members {};

TerminationSignals::TerminationSignals() {
    const QMutexLocker lock(&mutex);
    receiver = this;
    receive = [](TerminationSignals& to, int signal) {
        to.end(signal);
    };
    SetConsoleCtrlHandler(tell, TRUE);
}

TerminationSignals::~TerminationSignals() {
    SetConsoleCtrlHandler(tell, FALSE);
    const QMutexLocker lock(&mutex);
    receiver = nullptr;
}

void TerminationSignals::end(int signal) {
    exitStatus_ = 128 + signal;
    QCoreApplication::exit(exitStatus_);
}

} // namespace tarvik::editor
