// A throw-away user with a real program, real tools and real files.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/test_peers.h"

namespace norvane {

/// Everything below one temporary folder, on a session bus of its own. Processes end with it. The user has
/// finished the setup guide.
class ProgramFixture {
public:
    ProgramFixture();
    ~ProgramFixture();
    ProgramFixture(const ProgramFixture&) = delete;
    ProgramFixture& operator=(const ProgramFixture&) = delete;

    [[nodiscard]] const PrivateBus& bus() const { return bus_; }
    [[nodiscard]] std::string path(const std::string& name) const { return root_ + "/" + name; }
    [[nodiscard]] std::string source() const { return path("home/Documents"); }
    [[nodiscard]] std::string destination() const { return path("Backup Disk"); }

    /// A schedule of every hour whose next backup is due when the launch grace of a minute is over.
    void makeBackupDue();
    void setLastBackupTwoHoursAgo() const;

    /// Runs a shell command in the user's environment; its output without the last line feed.
    std::string shell(const std::string& command) const;
    [[nodiscard]] std::string tmutil(const std::string& arguments) const;
    [[nodiscard]] std::string defaults(const std::string& arguments) const;

    /// Starts the program; `program` and the variables "NAME=value" replace the usual ones.
    pid_t start(const std::string& program = NORVANE_BIN_DIR "/norvane",
                const std::vector<std::string>& variables = {});
    /// The exit status of a process started here; none when it still runs after the time.
    std::optional<int> waitForExit(pid_t process, double seconds);
    [[nodiscard]] bool running(pid_t process);

    /// Calls an action of the desktop entry on the running program.
    void action(const std::string& name) const;

    [[nodiscard]] std::string log() const;
    /// Waits until the log holds the text behind its first `from` bytes. The position behind it; none in
    /// time.
    [[nodiscard]] std::optional<std::size_t> waitForLog(const std::string& text, double seconds,
                                                        std::size_t from = 0) const;

private:
    std::string root_;
    PrivateBus
        bus_; // activates nothing: a real service would outlive the test, or leave mounts in its folder
    std::vector<pid_t> processes_;
};

} // namespace norvane
