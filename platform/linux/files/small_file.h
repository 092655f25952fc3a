// Files that are read and written whole.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace norvane {

/// The file's first bytes, at most `limitBytes`; empty when it cannot be read.
[[nodiscard]] std::string readSmallFile(const std::string& path, std::size_t limitBytes = 65536);

/// Replaces the file in one step, mode 0600, through "<path>.new". A reader sees the old or the new content,
/// never a part. It survives a crash of the program; after a power cut it may be the old one. False: the file
/// is as it was; errno says why.
bool replaceFile(const std::string& path, std::string_view bytes);

/// The same, and once it returns true the new content survives a power cut, too. Waits for the disk.
bool replaceFileDurably(const std::string& path, std::string_view bytes, mode_t mode = 0600);

} // namespace norvane
