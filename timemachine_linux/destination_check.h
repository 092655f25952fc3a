// Whether a folder can be the backup destination, and what its owner should know of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "timemachine_linux/rsync_command.h"

namespace norvane {

enum class DestinationProblem {
    none,
    missing, ///< It does not exist or cannot be reached.
    notAFolder,
    rootFolder,
    strangeName, ///< A path that `tmutil destinationinfo` cannot print in one line, exactly.
    isASource,
    insideBackup, ///< In a snapshot, which never changes.
    readOnly,     ///< Its file system is.
    notWritable,
    noHardLinks, ///< Snapshots share unchanged files by them (vfat, exfat).
};

enum class DestinationRemark {
    insideSource, ///< It is itself left out of the backups.
    sameDisk,     ///< A disk that fails takes the files and their backups with it.
    noAccessControlLists,
    noExtendedAttributes,
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
    struct Remark {
        DestinationRemark kind;
        std::string path; ///< The source that it is about, if it is about one.
        std::string text; ///< As a line for a terminal.

        bool operator==(const Remark&) const = default;
    };

    DestinationProblem problem = DestinationProblem::none;
    std::string explanation;     ///< The problem as a line for a terminal; it names the folder.
    std::vector<Remark> remarks; ///< Of a usable destination only.

    [[nodiscard]] bool usable() const { return problem == DestinationProblem::none; }
};

/// Writes a small file into the folder and removes it again. May wait for a file system that does not answer.
/// `sources` as `SourceSelection` holds them.
[[nodiscard]] DestinationFacts examineDestination(const std::string& folder,
                                                  const std::vector<std::string>& sources);

/// Pure.
[[nodiscard]] DestinationVerdict judgeDestination(const DestinationFacts& facts);

} // namespace norvane
