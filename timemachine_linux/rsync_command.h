// The command line and the filter file for one rsync run. Pure. Format: rsync(1), FILTER RULES.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace norvane {

/// What the destination's file system can hold.
struct FileSystemAbilities {
    bool accessControlLists = true;
    bool extendedAttributes = true;
    bool nanoseconds = true; ///< Modification times keep fractions of a second.

    bool operator==(const FileSystemAbilities&) const = default;
};

struct CopyJob {
    std::vector<std::string> sources; ///< Absolute and canonical.
    std::string target;               ///< The folder that receives the sources below their full paths.
    std::optional<std::string> previousSnapshot; ///< A sibling of `target`: unchanged files are linked to it.
    std::string filterFile;                      ///< Written with `filterFileFor`.
    FileSystemAbilities abilities;
    bool resuming = false; ///< The target may hold files of an earlier, unfinished run.
};

/// The arguments after the program name.
[[nodiscard]] std::vector<std::string> rsyncArguments(const CopyJob& job);

/// One anchored rule for each path, a zero byte after each, since a name may hold a line feed.
[[nodiscard]] std::string filterFileFor(const std::vector<std::string>& excludedPaths);

} // namespace norvane
