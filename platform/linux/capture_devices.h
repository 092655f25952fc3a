// Cameras and microphones that programs use without a media server.
#pragma once

#include <chrono>
#include <string>

namespace norvane {

/// Whether one of this user's programs has a video device open, as most browsers do; media servers, which
/// hold idle ones open, do not count. Folders: /proc and /dev.
[[nodiscard]] bool videoDeviceIsOpen(const std::string& procFolder, const std::string& deviceFolder,
                                     std::chrono::steady_clock::time_point end);

/// Whether a sound card captures, for whichever user (/proc/asound/card*/pcm*c/sub*/status). Folder: /proc.
[[nodiscard]] bool soundCardCaptures(const std::string& procFolder);

} // namespace norvane
