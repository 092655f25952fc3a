// What the file system of a folder can do.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "timemachine_linux/files/failure.h"

namespace norvane {

/// What it can hold.
struct FileSystemAbilities {
    bool accessControlLists = true;
    bool extendedAttributes = true;
    bool nanoseconds = true; ///< Modification times keep fractions of a second.

    bool operator==(const FileSystemAbilities&) const = default;
};

struct FileSystemSpace {
    std::int64_t availableBytes = 0; ///< For ordinary users.
    std::int64_t usedBytes = 0;
};

/// None: the file system does not answer.
[[nodiscard]] std::optional<FileSystemSpace> spaceOf(const std::string& folder);

/// Tries it out with a file in the folder, which must be writable. What cannot be found out counts as there.
[[nodiscard]] FileSystemAbilities abilitiesOf(const std::string& folder);

/// Makes a file in the folder, gives it a second name and removes both.
[[nodiscard]] std::optional<Failure> probeHardLinks(const std::string& folder);

/// Writes a file in the folder, proves it to be on the disk and removes it.
[[nodiscard]] std::optional<Failure> probeWriting(const std::string& folder);

} // namespace norvane
