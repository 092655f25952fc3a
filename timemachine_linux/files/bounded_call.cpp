#include "timemachine_linux/files/bounded_call.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/child_descriptors.h"

namespace norvane {

namespace {

[[noreturn]] void answer(int fd, const std::function<std::optional<std::string>()>& question) {
    // Stuck for ever, it must not hold the caller's locks, nor keep a reader of the caller's output waiting.
    // Past the standard streams the pipe stays when they are redirected, even if the caller had closed them.
    const int pipe = ::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (pipe < 0)
        ::_exit(1);
    closeAllBut(pipe, pipe);
    redirectStandardStreams();
    const auto text = question();
    ::_exit(text && writeAll(pipe, *text) ? 0 : 1);
}

// None: the time is over, or reading failed.
std::optional<std::string> readUntilEnd(int fd, double timeoutSeconds) {
    using SteadyClock = std::chrono::steady_clock;
    const auto deadline = SteadyClock::now() + std::chrono::duration<double>(timeoutSeconds);
    std::string text;
    std::array<char, 4096> chunk;
    for (;;) {
        const std::chrono::duration<double, std::milli> left = deadline - SteadyClock::now();
        if (left.count() <= 0)
            return std::nullopt;
        pollfd readable{fd, POLLIN, 0};
        const int ready = ::poll(&readable, 1, static_cast<int>(left.count()) + 1);
        if (ready == 0 || (ready < 0 && errno == EINTR))
            continue;
        const ssize_t count = ready < 0 ? -1 : ::read(fd, chunk.data(), chunk.size());
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return text;
        text.append(chunk.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::optional<std::string> callBounded(double timeoutSeconds,
                                       const std::function<std::optional<std::string>()>& question) {
    auto pipe = makePipe();
    if (!pipe)
        return std::nullopt;
    const pid_t child = ::fork();
    if (child < 0)
        return std::nullopt;
    if (child == 0)
        answer(pipe->writing.get(), question);
    pipe->writing.reset();
    auto text = readUntilEnd(pipe->reading.get(), timeoutSeconds);
    if (!text) {
        // Killed or not, it may stay stuck in the kernel for ever; whoever adopts it reaps it then.
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, WNOHANG);
        return std::nullopt;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? text : std::nullopt;
}

} // namespace norvane
