#include "timemachine_linux/local_snapshots/local_snapshot_removal.h"

#include "timemachine_linux/files/file_system_probe.h"

namespace norvane {

namespace {

constexpr double restorePointSeconds = 24 * 3600;

bool isShortOfRoom(const std::string& volume) {
    const auto space = spaceOf(volume);
    return space && space->availableBytes < (space->availableBytes + space->usedBytes) / 10;
}

void remove(const LocalSnapshots& snapshots, const LocalSnapshot& snapshot, std::vector<std::string>& notes) {
    if (const auto failure = snapshots.remove(snapshot.token))
        notes.push_back("Cannot remove an old local snapshot: " + failure->text);
}

} // namespace

void removeLocalSnapshotsForRoom(const LocalSnapshots& snapshots, std::vector<std::string>& notes) {
    if (isShortOfRoom(snapshots.volume()))
        for (const LocalSnapshot& snapshot : snapshots.list())
            remove(snapshots, snapshot, notes);
}

void removeExpiredLocalSnapshots(const LocalSnapshots& snapshots, Instant now,
                                 std::vector<std::string>& notes) {
    const bool all = isShortOfRoom(snapshots.volume());
    for (const LocalSnapshot& snapshot : snapshots.list())
        if (all || secondsBetween(snapshot.created, now) > restorePointSeconds)
            remove(snapshots, snapshot, notes);
}

} // namespace norvane
