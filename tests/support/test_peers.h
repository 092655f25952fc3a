// Real peers for tests: a bus of its own, and processes that end with the test.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace norvane {

/// The content of a file; empty when there is none.
[[nodiscard]] std::string textOf(const std::string& path);

/// A temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

/// A child process in a process group of its own; the whole group is killed with the object. Nothing that it
/// prints is lost: both streams go to one file.
class PeerProcess {
public:
    /// The first word is looked up in PATH; each variable is "NAME=value" and replaces the inherited one.
    explicit PeerProcess(const std::vector<std::string>& words,
                         const std::vector<std::string>& variables = {});
    ~PeerProcess();
    PeerProcess(const PeerProcess&) = delete;
    PeerProcess& operator=(const PeerProcess&) = delete;

    [[nodiscard]] pid_t id() const { return id_; }
    /// What it printed so far.
    [[nodiscard]] std::string output() const;
    /// False: not printed within the time.
    [[nodiscard]] bool waitForOutput(const std::string& text, double seconds = 10) const;
    /// Exit status, or 128 and the signal; none: it still runs after the time.
    std::optional<int> waitForExit(double seconds = 10);
    /// A hung service: it keeps its connections and answers nothing until it goes on.
    void freeze() const;
    void goOn() const;
    void end();

private:
    ScratchFolder folder_;
    pid_t id_ = 0;
    std::optional<int> status_;
};

/// An X server without a screen to look at (Xvfb), on the first free display.
class PrivateDisplay {
public:
    /// Throws std::runtime_error when it does not start.
    PrivateDisplay(int width, int height);

    /// "DISPLAY=:7".
    [[nodiscard]] const std::string& variable() const { return variable_; }

    /// 0xRRGGBB of what shows there, which must be on the screen.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const;

private:
    ScratchFolder folder_; // with what the screen shows
    PeerProcess server_;
    std::string variable_;
};

/// One private bus that serves a test as session bus and as system bus. Activates no service.
class PrivateBus {
public:
    PrivateBus();

    [[nodiscard]] const std::string& address() const { return address_; }
    /// "DBUS_SESSION_BUS_ADDRESS=…" and "DBUS_SYSTEM_BUS_ADDRESS=…", for processes of the test.
    [[nodiscard]] std::vector<std::string> variables() const;
    /// Calls `gdbus` with these words; what it printed.
    std::string gdbus(const std::vector<std::string>& words) const;
    /// Waits until somebody owns the name on the bus.
    [[nodiscard]] bool waitForName(const std::string& name, double seconds = 10) const;

    void stop() { daemon_.reset(); }
    /// It keeps its connections, accepts new ones, and answers nothing until it goes on.
    void freeze() const { daemon_->freeze(); }
    void goOn() const { daemon_->goOn(); }
    /// A new bus at the same address; the clients of the old one are gone.
    void restart();

private:
    ScratchFolder folder_;
    std::string address_;
    std::optional<PeerProcess> daemon_;
};

/// Whether a program of this name is in PATH; tests whose peer is not installed are skipped with its name.
[[nodiscard]] bool installed(const std::string& program);

/// Asks again and again until `holds` answers true. False: it did not within the time.
template <class Condition>
[[nodiscard]] bool eventually(Condition holds, double seconds = 30) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!holds()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace norvane
