// Running commands as child processes (posix_spawn(3), pidfd_open(2)).
#pragma once

#include <mutex>
#include <set>
#include <sys/types.h>

#include "platform/command_runner.h"

namespace norvane {

/// Both streams are drained as they fill, so that a child writing to either never waits for the other. A
/// grandchild that keeps a stream open delays the result to 2 seconds past the time limit at most. None also
/// for want of a descriptor (the child, if there is one yet, is killed), and in a process that ignores
/// SIGCHLD.
class ChildCommandRunner final : public CommandRunner {
public:
    [[nodiscard]] std::optional<CommandResult> run(const std::string& executablePath,
                                                   const std::vector<std::string>& arguments,
                                                   double timeoutSeconds) const override;

    /// Before the process itself ends: asks whatever still runs to end (SIGTERM), or kills it, and starts
    /// nothing more. Any thread.
    void endAll(bool kill) const;

private:
    class Running;
    [[nodiscard]] bool isEnding() const;

    mutable std::mutex mutex_;
    mutable std::set<pid_t> running_; ///< Not reaped yet, so that these numbers are nobody else's.
    mutable bool ending_ = false;
};

} // namespace norvane
