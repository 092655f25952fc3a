// Where the backups go, as last learned, and whether the disk is still there.
#pragma once

#include <optional>
#include <string>

#include "platform/file_system.h"

namespace norvane {

struct DestinationFolder {
    std::string path;
    /// Where the disk that held the folder was mounted. Some mount points stay when their disk goes, as empty
    /// folders, so that the folder's existence alone proves nothing.
    std::optional<std::string> mountedAt;
};

/// `known` is what was learned before: of the same folder, it may have seen a disk that is away now.
[[nodiscard]] inline DestinationFolder
destinationFolderAt(const std::string& path, const FileSystem& files,
                    const std::optional<DestinationFolder>& known = std::nullopt) {
    DestinationFolder folder{path, files.mountPointOf(path)};
    if (known && known->path == path &&
        known->mountedAt.value_or("").size() > folder.mountedAt.value_or("").size())
        folder.mountedAt = known->mountedAt;
    return folder;
}

/// A folder that was learned while its disk was away counts as there, before and after the disk comes.
[[nodiscard]] inline bool isConnected(const DestinationFolder& folder, const FileSystem& files) {
    const auto mountedAt = folder.mountedAt ? files.mountPointOf(folder.path) : std::nullopt;
    const bool leftToTheDiskAbove = mountedAt && mountedAt->size() < folder.mountedAt->size();
    return !leftToTheDiskAbove && files.exists(folder.path);
}

} // namespace norvane
