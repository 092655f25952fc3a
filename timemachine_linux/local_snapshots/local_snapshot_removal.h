// Which local snapshots go.
#pragma once

#include "timemachine_linux/local_snapshots/local_snapshots.h"

namespace norvane {

/// All when less than a tenth of the volume is free: nothing of the user's shall fail for the room that they
/// take. Adds to the notes what cannot be removed.
void removeLocalSnapshotsForRoom(const LocalSnapshots& snapshots, std::vector<std::string>& notes);
/// Those that are older than a day, too. Only after a backup: without one they may be the only copies.
void removeExpiredLocalSnapshots(const LocalSnapshots& snapshots, Instant now,
                                 std::vector<std::string>& notes);

} // namespace norvane
