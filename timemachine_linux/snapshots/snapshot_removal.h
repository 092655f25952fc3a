// Old snapshots go: for the room that a backup needs, and because newer ones have superseded them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/time/clock.h"
#include "timemachine_linux/session/session_status_file.h"
#include "timemachine_linux/session/stop_requests.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

/// For the worker that holds the store's lock; ends early when that is to stop. The newest whole snapshot
/// always stays: the next copy builds on it, and it may be all there is. All referred to must outlive this
/// object; what went, and what could not be removed, is told in `notes`.
class SnapshotRemoval {
public:
    SnapshotRemoval(const SnapshotStore& store, StopRequests& stop, SessionStatusFile& status,
                    std::vector<std::string>& notes);

    /// For a backup of this size. The oldest go first, and only where that helps: what the newest shares with
    /// them stays on the disk.
    void makeRoom(std::int64_t bytes);

    /// True: snapshots have gone.
    bool thin(Instant now);

private:
    [[nodiscard]] std::size_t superfluous(const std::vector<Snapshot>& snapshots, std::int64_t bytes);
    [[nodiscard]] std::int64_t comfortable(std::int64_t bytes) const;
    [[nodiscard]] std::int64_t missingRoom(std::int64_t bytes) const;
    [[nodiscard]] bool remove(const Snapshot& snapshot);

    const SnapshotStore& store_;
    StopRequests& stop_;
    SessionStatusFile& status_;
    std::vector<std::string>& notes_;
};

} // namespace norvane
