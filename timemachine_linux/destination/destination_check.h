// Whether a folder can be the backup destination, and what its owner should know of it.
#pragma once

#include <string>
#include <vector>

#include "timemachine_linux/files/file_system_probe.h"

namespace norvane {

enum class DestinationProblem {
    none,
    missing, ///< It does not exist or cannot be reached.
    notAFolder,
    rootFolder,
    unprintable, ///< A path that `tmutil destinationinfo` cannot print in one line, exactly.
    isSource,
    insideBackup, ///< In a snapshot, which never changes.
    readOnly,     ///< Its file system is.
    notWritable,
    noHardLinks, ///< Snapshots share unchanged files by them (vfat, exfat).
};

/// What was found out about a folder.
struct DestinationFacts {
    std::string path;    ///< Canonical if the folder is there, else as given.
    int accessError = 0; ///< errno(3) of reaching it; 0: it is there, and what follows is known.
    std::vector<std::string> otherPaths; ///< At which it shows too, by mounts.
    bool isFolder = false;
    std::string fileSystem; ///< Such as "exfat"; empty: unknown.
    std::string backup;     ///< The snapshot that holds it; empty: none does.
    int writeError = 0;     ///< errno(3) of writing a file there.
    int linkError = 0;      ///< errno(3) of giving that file a second name.
    FileSystemAbilities abilities;
    std::vector<std::string> sources;           ///< All that are backed up.
    std::vector<std::string> sourcesOnSameDisk; ///< Those of them that share a disk with it.
};

struct DestinationVerdict {
    DestinationProblem problem = DestinationProblem::none;
    std::string fileSystem;     ///< Of the folder; empty: unknown.
    std::string insideSource;   ///< A source that holds the folder, which backups leave out; empty: none.
    std::string sharesDiskWith; ///< A source on the same disk, which would be lost with it; empty: none.

    [[nodiscard]] bool usable() const { return problem == DestinationProblem::none; }

    bool operator==(const DestinationVerdict&) const = default;
};

enum class Examination {
    byLooking, ///< Changes nothing. On a mount that may never answer only the mount table is read, and what
               ///< is unknown counts as good.
    byWriting, ///< Writes a small file and removes it again. May wait for a file system that does not answer.
};

/// `sources`: canonical paths.
[[nodiscard]] DestinationFacts examineDestination(const std::string& folder,
                                                  const std::vector<std::string>& sources,
                                                  Examination examination);

/// Pure.
[[nodiscard]] DestinationVerdict judgeDestination(const DestinationFacts& facts);

/// The verdict for a terminal: the problem as a line that names the folder, empty if there is none; and what
/// the owner of a usable destination should know, a line each.
[[nodiscard]] std::string problemLine(const DestinationFacts& facts);
[[nodiscard]] std::vector<std::string> remarkLines(const DestinationFacts& facts);

} // namespace norvane
