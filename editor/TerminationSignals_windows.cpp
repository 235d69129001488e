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

// On a thread of the system's own. Of a console that is closed and of the end of a session the process is
// ended as soon as this returns, so that it waits for the program to end by itself.
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

struct TerminationSignals::Members {
    QObject receiver;
};

TerminationSignals::TerminationSignals() : members_(std::make_unique<Members>()) {
    const QMutexLocker lock(&mutex);
    receiver = &members_->receiver;
    receive = [this](int signal) {
        end(signal);
    };
    SetConsoleCtrlHandler(tell, TRUE);
}

TerminationSignals::~TerminationSignals() {
    SetConsoleCtrlHandler(tell, FALSE);
    const QMutexLocker lock(&mutex);
    receiver = nullptr;
    receive = nullptr;
}

void TerminationSignals::end(int signal) {
    exitStatus_ = 128 + signal;
    QCoreApplication::exit(exitStatus_);
}

} // namespace tarvik::editor
