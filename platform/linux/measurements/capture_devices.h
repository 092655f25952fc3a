// Cameras and microphones that programs use without a media server.
#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

/// Whether one of this user's programs has a video device open, as most browsers do; media servers, which
/// hold idle ones open, do not count. Main thread.
class VideoDevices {
public:
    /// Folders: /proc and /dev.
    VideoDevices(std::string procFolder, const std::string& deviceFolder);

    /// False also when the time ends before all processes were looked at.
    [[nodiscard]] bool inUse(std::chrono::steady_clock::time_point end);

private:
    [[nodiscard]] bool mayBeOpened(const std::vector<std::string>& devices);
    /// None: not all processes could be looked at, and none of the others has one open.
    [[nodiscard]] std::optional<bool> areOpen(std::chrono::steady_clock::time_point end) const;

    const std::string procFolder_;
    const std::string prefix_;
    const FileDescriptor openings_; // inotify(7)
    std::set<int> watched_;
    bool idle_ = false; // when all processes were looked at last, none had a device open
};

/// Whether a sound card captures, for whichever user (/proc/asound/card*/pcm*c/sub*/status). Folder: /proc.
[[nodiscard]] bool soundCardCaptures(const std::string& procFolder);

} // namespace norvane
