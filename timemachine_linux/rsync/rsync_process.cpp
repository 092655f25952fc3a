#include "timemachine_linux/rsync/rsync_process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/file_lock.h"

namespace norvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int tickMilliseconds = 250;
constexpr auto patience = std::chrono::seconds(10);
constexpr std::size_t mostErrorLines = 1000;

std::vector<std::string> environmentForRsync() {
    std::vector<std::string> environment{"LC_ALL=C"};
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view variable = *entry;
        // rsync takes options from variables of its own, and messages must come in one language.
        if (!variable.starts_with("RSYNC_") && !variable.starts_with("LC_ALL="))
            environment.emplace_back(variable);
    }
    return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string& text : strings)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

struct ChildPlan {
    const char* program;
    char* const* arguments;
    char* const* environment;
    int output;
    int errors;
    int copyLock;
    int destinationLock;
    pid_t parent;
};

[[noreturn]] void becomeRsync(const ChildPlan& plan) {
    constexpr int cannotExecute = 127;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != plan.parent)
        ::_exit(cannotExecute);
    ::setpgid(0, 0);
    ::signal(SIGPIPE, SIG_DFL);
    unblockStopSignals();
    ::dup2(plan.output, STDOUT_FILENO);
    ::dup2(plan.errors, STDERR_FILENO);
    // Inherited on purpose: the locks stay held until the last process of rsync has ended.
    ::fcntl(plan.copyLock, F_SETFD, 0);
    ::fcntl(plan.destinationLock, F_SETFD, 0);
    ::execve(plan.program, plan.arguments, plan.environment);
    ::_exit(cannotExecute);
}

// Splits standard error into lines and keeps a bounded number of them.
class ErrorLines {
public:
    void feed(std::string_view bytes) {
        for (const char c : bytes) {
            if (c != '\n')
                line_ += c;
            else
                keep();
        }
    }
    [[nodiscard]] std::vector<std::string> take() {
        keep();
        return std::move(lines_);
    }

private:
    void keep() {
        const bool counts = !line_.empty() && (lines_.size() < mostErrorLines ||
                                               (lines_.size() < 2 * mostErrorLines && isFatal(line_)));
        if (counts)
            lines_.push_back(line_);
        line_.clear();
    }

    std::string line_;
    std::vector<std::string> lines_;
};

/// False: the other side has closed it.
bool drain(FileDescriptor& fd, const std::function<void(std::string_view)>& consume) {
    std::array<char, 65536> chunk;
    const ssize_t count = ::read(fd.get(), chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR)
        return true;
    if (count <= 0) {
        fd.reset();
        return false;
    }
    consume({chunk.data(), static_cast<std::size_t>(count)});
    return true;
}

class Supervision {
public:
    Supervision(const RsyncRun& run, StopRequests& stop, pid_t child)
        : run_(run), stop_(stop), child_(child) {}

    std::vector<std::string> follow(FileDescriptor& output, FileDescriptor& errors) {
        ErrorLines lines;
        auto nextTick = SteadyClock::now();
        while (output || errors) {
            std::array<pollfd, 3> events{pollfd{output.get(), POLLIN, 0}, pollfd{errors.get(), POLLIN, 0},
                                         pollfd{stoppedAt_ ? -1 : stop_.fd(), POLLIN, 0}};
            if (::poll(events.data(), events.size(), tickMilliseconds) < 0 && errno != EINTR)
                break;
            if (events[0].revents != 0)
                drain(output, run_.onOutput);
            if (events[1].revents != 0)
                drain(errors, [&](std::string_view bytes) { lines.feed(bytes); });
            passStopOn();
            if (SteadyClock::now() >= nextTick) {
                run_.onTick();
                nextTick = SteadyClock::now() + std::chrono::milliseconds(tickMilliseconds);
            }
        }
        return lines.take();
    }

private:
    void passStopOn() {
        if (!stoppedAt_ && stop_.requested()) {
            stoppedAt_ = SteadyClock::now();
            ::kill(-child_, SIGTERM);
            run_.onStopping();
        }
        if (stoppedAt_ && SteadyClock::now() - *stoppedAt_ > patience)
            ::kill(-child_, SIGKILL);
    }

    const RsyncRun& run_;
    StopRequests& stop_;
    const pid_t child_;
    std::optional<SteadyClock::time_point> stoppedAt_;
};

int waitForStatus(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    constexpr int signalBase = 128;
    return WIFSIGNALED(status) ? signalBase + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

bool waitForEarlierRun(const std::string& copyLockPath, double timeoutSeconds, StopRequests& stop) {
    const auto deadline = SteadyClock::now() + std::chrono::duration<double>(timeoutSeconds);
    while (FileLock::isHeld(copyLockPath)) {
        if (SteadyClock::now() > deadline || stop.requested())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

Result<RsyncExit> runRsync(const RsyncRun& run, StopRequests& stop) {
    auto output = makePipe();
    auto errors = makePipe();
    if (!output || !errors)
        return systemFailure();
    std::optional<FileLock> copyLock;
    if (!run.copyLockPath.empty()) {
        auto lock = FileLock::tryAcquire(run.copyLockPath);
        if (!lock)
            return lock.failure();
        copyLock = std::move(*lock);
    }
    std::vector<std::string> words{"rsync"};
    words.insert(words.end(), run.arguments.begin(), run.arguments.end());
    std::vector<std::string> variables = environmentForRsync();
    const std::vector<char*> arguments = pointersTo(words);
    const std::vector<char*> environment = pointersTo(variables);
    const ChildPlan plan{run.program.c_str(),   arguments.data(),
                         environment.data(),    output->writing.get(),
                         errors->writing.get(), copyLock ? copyLock->fd() : -1,
                         run.destinationLock,   ::getpid()};
    const pid_t child = ::fork();
    if (child < 0)
        return systemFailure();
    if (child == 0)
        becomeRsync(plan);
    ::setpgid(child, child); // whichever of the two comes first, so that a stop finds the group
    output->writing.reset();
    errors->writing.reset();
    copyLock.reset();
    RsyncExit exit;
    exit.errors = Supervision(run, stop, child).follow(output->reading, errors->reading);
    exit.status = waitForStatus(child);
    return exit;
}

} // namespace norvane
