#include "timemachine_linux/session/detached_worker.h"

#include <cerrno>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/child_descriptors.h"
#include "timemachine_linux/session/stop_requests.h"

namespace norvane {

namespace {

void leaveCaller(int lockFd, int goingFd) {
    ::setsid();
    closeAllBut(lockFd, goingFd);
    redirectStandardStreams();
    ::umask(S_IRWXG | S_IRWXO);
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGCHLD, SIG_DFL);
    if (::chdir("/") != 0)
        ::_exit(EXIT_FAILURE);
}

} // namespace

std::optional<pid_t> startDetached(const FileLock& lock,
                                   const std::function<int(std::function<void()> going)>& work) {
    auto pipe = makePipe();
    if (!pipe)
        return std::nullopt;
    // Blocked until the worker can take a request to stop, so that an early one is not lost.
    blockStopSignals();
    const pid_t worker = ::fork();
    if (worker == 0) {
        leaveCaller(lock.fd(), pipe->writing.get());
        ::_exit(work([&] {
            writeAll(pipe->writing.get(), "1");
            pipe->writing.reset();
        }));
    }
    unblockStopSignals();
    if (worker < 0)
        return std::nullopt;
    pipe->writing.reset();
    char byte = 0;
    ssize_t count = 0;
    while ((count = ::read(pipe->reading.get(), &byte, 1)) < 0 && errno == EINTR) {
    }
    if (count == 1)
        return worker;
    while (::waitpid(worker, nullptr, 0) < 0 && errno == EINTR) {
    }
    return std::nullopt;
}

int waitForDetached(pid_t worker) {
    int status = 0;
    while (::waitpid(worker, &status, 0) < 0)
        if (errno != EINTR)
            return 255;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

} // namespace norvane
