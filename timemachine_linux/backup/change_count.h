// How much a backup will have to copy.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace norvane {

struct ChangeTotals {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    /// Folders below the sources that are not on their file system: mounts, and the subvolumes of Btrfs,
    /// which no list of mounts has. Not looked into.
    std::vector<std::string> otherFileSystems;

    bool operator==(const ChangeTotals&) const = default;
};

struct ChangeQuestion {
    std::vector<std::string> sources;
    std::vector<std::string> excluded;
    /// Folders that hold earlier copies of the sources below their full paths.
    std::vector<std::string> bases;
    bool nanoseconds = true; ///< Compare modification times to the nanosecond, else to the second.
};

/// Counts the regular files that no base holds at the same size and modification time: rsync's own quick
/// check (rsync(1)), at a tenth of the cost of asking rsync by a dry run. Unreadable folders count as empty.
/// Ends early, with what it has, once `stopRequested` says so.
[[nodiscard]] ChangeTotals countChanges(const ChangeQuestion& question,
                                        const std::function<bool()>& stopRequested);

} // namespace norvane
