#include "TerminationSignals.hpp"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace tarvik::editor {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// A handler may do little more than write to a pipe.
std::atomic<int> pipeEnd{-1};

void tell(int signal) {
    const int error = errno;
    const auto byte = static_cast<std::uint8_t>(signal);
    [[maybe_unused]] const ssize_t written = ::write(pipeEnd, &byte, 1);
    errno = error;
}

} // namespace

struct TerminationSignals::Members {
    std::array<int, 2> pipe{-1, -1};
    std::array<struct sigaction, kSignals.size()> before{};
    std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals() : members_(std::make_unique<Members>()) {
    if (::pipe2(members_->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals then end the process at once, as ever
    pipeEnd = members_->pipe[1];
    members_->notifier = std::make_unique<QSocketNotifier>(members_->pipe[0], QSocketNotifier::Read);
    QSocketNotifier* notifier = members_->notifier.get();
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] {
        std::uint8_t signal = 0;
        if (::read(members_->pipe[0], &signal, 1) == 1)
            end(signal);
    });
    struct sigaction action {};
    action.sa_handler = tell;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], nullptr, &members_->before[i]);
        if (members_->before[i].sa_handler != SIG_IGN) // as nohup wants it
            ::sigaction(kSignals[i], &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (!members_->notifier)
        return;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &members_->before[i], nullptr);
    members_->notifier.reset();
    pipeEnd = -1;
    for (const int end : members_->pipe)
        ::close(end);
}

void TerminationSignals::end(int signal) {
    exitStatus_ = 128 + signal;
    QCoreApplication::exit(exitStatus_);
}

} // namespace tarvik::editor
