// For tests: a user of their own, with a home folder, a tree to back up and a destination.
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

#include "platform/linux/files/user_defaults_file.h"
#include "tests/support/test_peers.h"
#include "timemachine_linux/session/backup_session_state.h"
#include "timemachine_linux/session/result_code.h"

namespace norvane {

struct ToolResult {
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// Sets HOME, XDG_* and PATH of the whole test process while it lives, and removes all at the end.
class BackupSandbox {
public:
    BackupSandbox();
    BackupSandbox(const BackupSandbox&) = delete;
    BackupSandbox& operator=(const BackupSandbox&) = delete;
    ~BackupSandbox();

    [[nodiscard]] std::string home() const { return root_.path("home"); }
    [[nodiscard]] std::string tree() const { return home() + "/tree"; } ///< The only source folder.
    [[nodiscard]] std::string destination() const { return root_.path("disk"); }
    [[nodiscard]] std::string in(const std::string& name) const { return root_.path(name); }

    [[nodiscard]] ToolResult run(const std::vector<std::string>& command) const;
    [[nodiscard]] ToolResult tmutil(std::vector<std::string> arguments) const;
    [[nodiscard]] std::vector<std::string> snapshots() const; ///< Their paths, as tmutil lists them.
    [[nodiscard]] std::string copyOf(const std::string& snapshot, const std::string& path) const;
    [[nodiscard]] std::string status(const std::string& key) const;
    [[nodiscard]] PropertyList
    recorded(const std::string& key) const; ///< Of the destination; empty text if absent.
    [[nodiscard]] ResultCode recordedResult() const {
        return static_cast<ResultCode>(recorded("RESULT").exactInteger().value_or(-1));
    }
    [[nodiscard]] pid_t worker() const;

    /// If this is root, everything here belongs to somebody else from now on, who runs every later tmutil.
    void becomeOrdinaryUser();

    /// Every later rsync copies at most so many kilobytes a second.
    void slowDownRsync(int kilobytesPerSecond) const;

    [[nodiscard]] bool timerIsOn() const;

    /// A shell script that every later program finds by this name.
    void putProgram(const std::string& name, const std::string& script) const;

private:
    /// Before anything asks for the user's folders.
    struct Home {
        explicit Home(const ScratchFolder& root);
    };

    ScratchFolder root_;
    Home environment_{root_};

public:
    UserDefaultsFile preferences;
    SessionFiles session;

private:
    void addSystemctl() const; ///< That of the machine would act on the timers of whoever runs the tests.

    std::vector<std::string> asUser_; ///< Before each command line of tmutil.
};

/// An empty file system in an image of its own, mounted at the folder while this lives.
class MountedImage {
public:
    MountedImage(const BackupSandbox& box, const std::string& type, std::string folder,
                 const std::string& options);
    MountedImage(const MountedImage&) = delete;
    MountedImage& operator=(const MountedImage&) = delete;
    ~MountedImage();

    /// False: the machine has no such file system, no loop devices, or the user may not mount.
    [[nodiscard]] bool mounted() const { return mounted_; }

private:
    const BackupSandbox& box_;
    const std::string folder_;
    bool mounted_ = false;
};

void writeFile(const std::string& path, const std::string& content);

/// Path, kind, mode, modification time and content of everything below the folder, in one number.
[[nodiscard]] std::uint64_t fingerprint(const std::string& folder);

} // namespace norvane
