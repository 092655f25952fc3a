// Which folders a backup takes and what it leaves out of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "timemachine_linux/sources/source_lists.h"

namespace norvane {

struct SourceSelection {
    /// Canonical, none excluded, none inside another on the same file system.
    std::vector<std::string> sources;
    std::vector<std::string> excluded; ///< Paths that are left out with all below them.
    std::vector<std::string> missing;  ///< Configured sources that do not exist now.
    /// Configured sources that are, or lie in, this machine's backups, which must not hold themselves.
    std::vector<std::string> inBackups;
    /// Of configured sources that are there and cannot be reached: the path and why, "/data: I/O error".
    std::vector<std::string> unreachable;
};

/// `destinationFolder` may be empty: none is configured.
[[nodiscard]] SourceSelection selectSources(const UserDefaultsFile& preferences, const UserPlaces& places,
                                            const std::string& destinationFolder);

struct MountBelow {
    std::string folder;
    bool answers; ///< False: looking at it fails or takes too long.
};

/// Those of the mounted folders that lie below a source, are neither excluded nor sources themselves, and are
/// not on the source's file system. May take a few seconds for each that does not answer.
[[nodiscard]] std::vector<MountBelow> otherFileSystems(const SourceSelection& selection,
                                                       const std::vector<std::string>& mountFolders);

/// Why the source cannot be read, as `SourceSelection::unreachable`. What it holds may still refuse.
[[nodiscard]] std::optional<Failure> failureToRead(const std::string& source);

/// Whether an exclusion covers the path (as `resolvedPath` gives it), or no source does.
[[nodiscard]] bool isLeftOut(const SourceSelection& selection, std::string_view path);

} // namespace norvane
