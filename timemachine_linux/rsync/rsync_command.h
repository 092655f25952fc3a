// The command line and the filter file for one rsync run. Pure. Format: rsync(1), FILTER RULES.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "timemachine_linux/files/file_system_probe.h"

namespace norvane {

/// Sources, and where they are read.
struct SourcePlace {
    std::vector<std::string> sources; ///< Absolute and canonical.
    std::string volume = "/";         ///< The folder that they lie in.
    std::string snapshot; ///< The folder that shows the volume as it was; empty: read them in place.

    bool operator==(const SourcePlace&) const = default;
};

struct CopyJob {
    SourcePlace place;
    std::string target; ///< The folder that receives the sources below their full paths.
    std::optional<std::string> previousSnapshot; ///< A sibling of `target`: unchanged files are linked to it.
    std::string filterFile;                      ///< Written with `filterFileFor` for the same place.
    FileSystemAbilities abilities;
    bool resuming = false; ///< The target may hold files of an earlier, unfinished run.
};

/// The arguments after the program name. The target holds the folder of a snapshot's volume already.
[[nodiscard]] std::vector<std::string> rsyncArguments(const CopyJob& job);

/// Copies the folders and those above them, without what is in them, with all that belongs to a folder.
[[nodiscard]] std::vector<std::string> rsyncFolderArguments(const CopyJob& job,
                                                            const std::vector<std::string>& folders);

/// Copies the items, absolute paths, into the folder under their own names.
[[nodiscard]] std::vector<std::string> rsyncRestoreArguments(const std::vector<std::string>& items,
                                                             const std::string& folder,
                                                             const FileSystemAbilities& abilities);

/// One anchored rule for each path in the place's volume, a zero byte after each, since a name may hold a
/// line feed.
[[nodiscard]] std::string filterFileFor(const SourcePlace& place,
                                        const std::vector<std::string>& excludedPaths);

/// Where the place shows what is at the path in its volume.
[[nodiscard]] std::string pathInPlace(const SourcePlace& place, const std::string& path);

/// The folder to which the place's volume corresponds in a snapshot's folder.
[[nodiscard]] std::string volumeBelow(const std::string& snapshotFolder, const SourcePlace& place);

/// The text with the paths in the place's snapshot as the user knows them.
[[nodiscard]] std::string withOriginalPaths(std::string text, const SourcePlace& place);

} // namespace norvane
