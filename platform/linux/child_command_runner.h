// Running commands as child processes (posix_spawn(3), pidfd_open(2)).
#pragma once

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
};

} // namespace norvane
