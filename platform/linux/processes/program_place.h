// Where the running program lies.
#pragma once

#include <cstdint>
#include <string>

namespace norvane {

/// The file that starts this program again: $APPIMAGE inside an AppImage (its own files lie in a mount that
/// ends with it), else /proc/self/exe. Empty when unknown.
[[nodiscard]] std::string programPath();

struct ProgramPlace {
    std::string path;
    bool appImage = false;            ///< An image that is its own installation.
    std::int64_t fileSystemMagic = 0; ///< As statfs(2) tells it; 0: unknown.
    bool readOnly = false;            ///< The file system is mounted so.
    std::string source = {};          ///< What is mounted there; empty: unknown.
};

/// Whether a program there belongs to a medium that it was handed out on, rather than to an installation:
/// what a Mac mounts disk images at, a file system of discs, and what desktops mount at /media or /run/media
/// if it is an image (loop(4)) or cannot be written to.
[[nodiscard]] bool isOnDiskImage(const ProgramPlace& place);

/// The same for the running program.
[[nodiscard]] bool runsFromDiskImage();

} // namespace norvane
