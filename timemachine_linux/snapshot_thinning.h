// Which snapshots have been superseded. Pure.
#pragma once

#include <vector>

#include "timemachine_linux/snapshot_store.h"

namespace norvane {

/// What need not be kept: of the last 24 hours all are, of the 30 days before `now` the newest of each day,
/// of the time before that the newest of each week (from Monday on). The newest of all is always kept. Days
/// are those in the snapshots' names. Takes and gives the oldest first.
[[nodiscard]] std::vector<Snapshot> supersededSnapshots(const std::vector<Snapshot>& snapshots, Instant now);

} // namespace norvane
