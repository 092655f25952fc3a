// Where the running program lies.
#pragma once

#include <cstdint>
#include <string>

namespace norvane {

/// The file that starts this program again: $APPIMAGE inside an AppImage (its own files lie in a mount that
/// ends with it), else /proc/self/exe. Empty when unknown.
[[nodiscard]] std::string programPath();

/// Whether a program at this path belongs to a medium that it was handed out on, rather than to an
/// installation: what a Mac mounts disk images at, what Linux mounts media at, or a file system of discs.
/// `fileSystemMagic` as statfs(2) tells it; 0 when unknown.
[[nodiscard]] bool isOnDiskImage(const std::string& path, std::int64_t fileSystemMagic);

/// The same for the running program.
[[nodiscard]] bool runsFromDiskImage();

} // namespace norvane
