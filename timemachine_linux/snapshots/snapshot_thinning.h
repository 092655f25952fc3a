// Which snapshots have been superseded. Pure.
#pragma once

#include <vector>

#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

/// What need not be kept: of the last 24 hours all are, of the last 30 days the newest of each day, of the
/// time before that the newest of each week (from Monday on). The newest of all is always kept. Days are
/// those in the snapshots' names. Time is counted back from the last backup but one, `now` at the latest: a
/// clock that is years ahead, as before it is set at start-up, takes nothing until there are two backups by
/// it. Takes and gives the oldest first.
[[nodiscard]] std::vector<Snapshot> supersededSnapshots(const std::vector<Snapshot>& snapshots, Instant now);

} // namespace norvane
