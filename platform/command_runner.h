// Running one command-line tool to its end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

/// The outcome of a child process that was started and has ended.
struct CommandResult {
    std::int32_t exitCode = 0; ///< Exit status; for a child ended by a signal, that signal's number.
    std::string stdout;        ///< All of standard output; empty when it is not valid UTF-8.
    std::string stderr;        ///< All of standard error; empty when it is not valid UTF-8.

    bool operator==(const CommandResult&) const = default;
};

class CommandRunner {
public:
    virtual ~CommandRunner() = default;

    /// Starts the program at `executablePath` (absolute) with exactly these arguments, no shell between, and
    /// blocks until it has ended and its two output streams are closed. After `timeoutSeconds` it is asked to
    /// end (SIGTERM), 2 seconds later it is killed. None: it could not be started. Never call it on the main
    /// thread; calls on several threads at once are fine.
    [[nodiscard]] virtual std::optional<CommandResult> run(const std::string& executablePath,
                                                           const std::vector<std::string>& arguments,
                                                           double timeoutSeconds) const = 0;
};

} // namespace norvane
