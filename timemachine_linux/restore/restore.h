// Bringing files and folders back from a snapshot.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "timemachine_linux/files/failure.h"
#include "timemachine_linux/session/stop_requests.h"

namespace norvane {

struct RestoreItem {
    std::string source; ///< In a snapshot; its parent folders are resolved.
    std::string target; ///< The path that it will have.

    bool operator==(const RestoreItem&) const = default;
};

struct RestorePlan {
    std::vector<RestoreItem> items;
    std::set<std::string> snapshots; ///< That hold the sources.
    std::string folder;              ///< The folder of all the targets.
};

/// The targets as cp(1) chooses them: in the destination if that is a folder, under the name of each source;
/// else the destination itself is the name, for one source. Refuses what would replace something, what comes
/// from outside a snapshot, and what would go into one.
[[nodiscard]] Result<RestorePlan> planRestore(const std::vector<std::string>& sources,
                                              const std::string& destination);

struct RestoreOutcome {
    std::optional<Failure> failure; ///< None: everything is there.
    std::vector<std::string> notes; ///< What could not be kept or read.
};

/// Copies with all attributes into a hidden folder beside the targets, then gives each item its name, if the
/// snapshots are still there: an item is there whole, or not at all, whenever this ends. If killed, it leaves
/// the hidden folder.
[[nodiscard]] RestoreOutcome restore(const RestorePlan& plan, const std::string& rsyncPath,
                                     StopRequests& stop);

} // namespace norvane
