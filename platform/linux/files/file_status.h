// What lstat(2) and fstat(2) tell of a file.
#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>

namespace norvane {

/// Of a symbolic link its own. None: there is nothing, or it cannot be reached; errno says which.
[[nodiscard]] inline std::optional<struct stat> fileStatus(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

[[nodiscard]] inline std::optional<struct stat> fileStatus(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 ? std::optional(status) : std::nullopt;
}

/// Whether both are there and are one file.
[[nodiscard]] inline bool isSameFile(const std::optional<struct stat>& one,
                                     const std::optional<struct stat>& other) {
    return one && other && one->st_dev == other->st_dev && one->st_ino == other->st_ino;
}

} // namespace norvane
