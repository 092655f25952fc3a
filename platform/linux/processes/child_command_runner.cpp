#include "platform/linux/processes/child_command_runner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

using MonotonicClock = std::chrono::steady_clock;
constexpr std::chrono::seconds killDelay{2};
constexpr std::size_t readSize = 64 * 1024;

/// The child starts with default signal handling whatever this process ignores or blocks.
std::optional<pid_t> spawn(const std::string& executablePath, const std::vector<std::string>& arguments,
                           int outputDescriptor, int errorDescriptor) {
    std::vector<char*> argv = {const_cast<char*>(executablePath.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (posix_spawn_file_actions_init(&actions) != 0)
        return std::nullopt;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return std::nullopt;
    }
    posix_spawn_file_actions_adddup2(&actions, outputDescriptor, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errorDescriptor, STDERR_FILENO);
    sigset_t everySignal;
    sigset_t noSignal;
    sigfillset(&everySignal);
    sigemptyset(&noSignal);
    posix_spawnattr_setsigdefault(&attributes, &everySignal);
    posix_spawnattr_setsigmask(&attributes, &noSignal);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

    pid_t child = 0;
    const int error =
        posix_spawn(&child, executablePath.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? std::optional(child) : std::nullopt;
}

/// Readable once the process has ended; always close-on-exec. (glibc 2.36 declares no pidfd_open for C++.)
int openProcess(pid_t process) { return static_cast<int>(syscall(SYS_pidfd_open, process, 0)); }

/// One output stream of the child, read until its end.
struct Stream {
    FileDescriptor descriptor; // closed once the stream has ended
    std::string text;

    void readSome() {
        const std::size_t oldSize = text.size();
        text.resize(oldSize + readSize);
        const ssize_t count = read(descriptor.get(), text.data() + oldSize, readSize);
        text.resize(oldSize + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
            descriptor.reset();
    }
};

/// Ends a child that takes too long: SIGTERM at the time limit, SIGKILL 2 seconds later.
class Watchdog {
public:
    Watchdog(pid_t child, double timeoutSeconds)
        : child_(child), next_(MonotonicClock::now() +
                               std::chrono::duration_cast<MonotonicClock::duration>(
                                   std::chrono::duration<double>(std::clamp(timeoutSeconds, 0.0, 1e9)))) {}

    [[nodiscard]] int millisecondsLeft() const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(next_ - MonotonicClock::now()).count();
        return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
    }

    /// False: there is nothing left to wait for, whoever still holds the streams.
    bool act(bool childRuns) {
        if (stage_ == Stage::killed && !childRuns)
            return false;
        if (MonotonicClock::now() < next_)
            return true;
        if (childRuns)
            kill(child_, stage_ == Stage::waiting ? SIGTERM : SIGKILL);
        stage_ = stage_ == Stage::waiting ? Stage::terminated : Stage::killed;
        next_ = MonotonicClock::now() + killDelay;
        return stage_ == Stage::terminated || childRuns;
    }

private:
    enum class Stage { waiting, terminated, killed };

    const pid_t child_;
    MonotonicClock::time_point next_;
    Stage stage_ = Stage::waiting;
};

/// Whether the child has not ended yet; one that has stays to be reaped.
bool stillRuns(pid_t child) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

/// Leaves it to be reaped.
void waitForEnd(pid_t child) {
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
}

/// Waits until the child has ended and both streams are closed, or the watchdog gives up on the streams.
void follow(pid_t child, Watchdog& watchdog, Stream& output, Stream& error) {
    constexpr int lookMilliseconds = 50; // where the system gives no descriptor for a process
    FileDescriptor ended(openProcess(child));
    bool runs = true;
    while (runs || output.descriptor || error.descriptor) {
        std::array<pollfd, 3> events = {pollfd{output.descriptor.get(), POLLIN, 0},
                                        pollfd{error.descriptor.get(), POLLIN, 0},
                                        pollfd{ended.get(), POLLIN, 0}};
        const int wait = watchdog.millisecondsLeft();
        poll(events.data(), events.size(), runs && !ended ? std::min(wait, lookMilliseconds) : wait);
        if (events[0].revents != 0)
            output.readSome();
        if (events[1].revents != 0)
            error.readSome();
        if (runs && (!ended || events[2].revents != 0)) {
            runs = stillRuns(child);
            if (!runs)
                ended.reset();
        }
        if (!watchdog.act(runs))
            return;
    }
}

/// None: this process ignores SIGCHLD, so that the system has thrown the status away.
std::optional<std::int32_t> reap(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return std::nullopt;
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

std::string validText(std::string bytes) { return isValidUtf8(bytes) ? std::move(bytes) : std::string(); }

} // namespace

/// A child that endAll() knows of.
class ChildCommandRunner::Running {
public:
    Running(const ChildCommandRunner& runner, pid_t child) : runner_(runner), child_(child) {
        const std::lock_guard guard(runner_.mutex_);
        runner_.running_.insert(child_);
        if (runner_.ending_)
            kill(child_, SIGKILL); // started while endAll() looked at the others
    }
    ~Running() {
        const std::lock_guard guard(runner_.mutex_);
        runner_.running_.erase(child_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    const ChildCommandRunner& runner_;
    const pid_t child_;
};

void ChildCommandRunner::endAll(bool kill) const {
    const std::lock_guard guard(mutex_);
    ending_ = true;
    for (const pid_t child : running_)
        ::kill(child, kill ? SIGKILL : SIGTERM);
}

bool ChildCommandRunner::isEnding() const {
    const std::lock_guard guard(mutex_);
    return ending_;
}

std::optional<CommandResult> ChildCommandRunner::run(const std::string& executablePath,
                                                     const std::vector<std::string>& arguments,
                                                     double timeoutSeconds) const {
    if (isEnding())
        return std::nullopt;
    auto outputPipe = makePipe();
    auto errorPipe = makePipe();
    if (!outputPipe || !errorPipe)
        return std::nullopt;
    const auto child = spawn(executablePath, arguments, outputPipe->writing.get(), errorPipe->writing.get());
    outputPipe->writing.reset();
    errorPipe->writing.reset();
    if (!child)
        return std::nullopt;
    std::optional<Running> running(std::in_place, *this, *child);
    Watchdog watchdog(*child, timeoutSeconds);
    Stream output{std::move(outputPipe->reading), {}};
    Stream error{std::move(errorPipe->reading), {}};
    follow(*child, watchdog, output, error);
    waitForEnd(*child);
    running.reset();
    const auto exitCode = reap(*child);
    if (!exitCode)
        return std::nullopt;
    return CommandResult{*exitCode, validText(std::move(output.text)), validText(std::move(error.text))};
}

} // namespace norvane
