#include "timemachine_linux/session/stop_requests.h"

#include <signal.h>
#include <sys/signalfd.h>

namespace norvane {

namespace {

sigset_t stopSignals() {
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, SIGTERM);
    ::sigaddset(&set, SIGINT);
    ::sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

void blockStopSignals() {
    const sigset_t set = stopSignals();
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

void unblockStopSignals() {
    const sigset_t set = stopSignals();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

StopRequests::StopRequests() {
    blockStopSignals();
    const sigset_t set = stopSignals();
    signals_.reset(::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC));
}

bool StopRequests::requested() {
    signalfd_siginfo info{};
    while (!requested_ && ::read(fd(), &info, sizeof info) == sizeof info)
        requested_ = true;
    return requested_;
}

} // namespace norvane
