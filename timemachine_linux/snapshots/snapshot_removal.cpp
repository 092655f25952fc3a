#include "timemachine_linux/snapshots/snapshot_removal.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "timemachine_linux/files/file_system_probe.h"
#include "timemachine_linux/files/tree_removal.h"
#include "timemachine_linux/snapshots/snapshot_room.h"
#include "timemachine_linux/snapshots/snapshot_thinning.h"

namespace norvane {

SnapshotRemoval::SnapshotRemoval(const SnapshotStore& store, StopRequests& stop, SessionStatusFile& status,
                                 std::vector<std::string>& notes)
    : store_(store), stop_(stop), status_(status), notes_(notes) {}

void SnapshotRemoval::makeRoom(std::int64_t bytes) {
    std::vector<Snapshot> old = store_.list();
    if (!old.empty())
        old.pop_back();
    old.resize(superfluous(old, bytes));
    for (const Snapshot& snapshot : old) {
        if (stop_.requested() || missingRoom(comfortable(bytes)) <= 0 || !remove(snapshot))
            return;
        notes_.push_back("Removed the oldest backup to make room: " + snapshot.name);
        // Some file systems count freed room only then. With a descriptor of its own: each is told of a lost
        // write once, and the worker's must still be.
        const FileDescriptor folder(::open(store_.folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        (void)::syncfs(folder.get());
    }
}

/// How many of these must go: with room to spare where that can be had.
std::size_t SnapshotRemoval::superfluous(const std::vector<Snapshot>& snapshots, std::int64_t bytes) {
    std::vector<std::string> folders;
    folders.reserve(snapshots.size());
    for (const Snapshot& snapshot : snapshots)
        folders.push_back(store_.pathOf(snapshot.name));
    for (const std::int64_t wanted : {comfortable(bytes), bytes}) {
        const std::int64_t missing = missingRoom(wanted);
        if (missing <= 0)
            return 0;
        status_.enter(phase::thinningBefore);
        if (const auto count = snapshotsHolding(missing, folders, [&] { return stop_.requested(); }))
            return *count;
    }
    if (!stop_.requested())
        notes_.emplace_back("Removing old backups would not make enough room");
    return 0;
}

/// Folders are not counted, files take whole blocks and grow meanwhile.
std::int64_t SnapshotRemoval::comfortable(std::int64_t bytes) const {
    const auto space = spaceOf(store_.folder());
    return bytes + bytes / 10 + (space ? space->availableBytes + space->usedBytes : 0) / 100;
}

std::int64_t SnapshotRemoval::missingRoom(std::int64_t bytes) const {
    const auto space = spaceOf(store_.folder());
    return space ? bytes - space->availableBytes : 0;
}

bool SnapshotRemoval::thin(Instant now) {
    bool gone = false;
    for (const Snapshot& snapshot : supersededSnapshots(store_.list(), now)) {
        if (stop_.requested())
            break;
        status_.enter(phase::thinningAfter);
        gone = remove(snapshot) || gone;
    }
    return gone;
}

/// First its name, then what is in it: a snapshot that has its name is whole. What a killed worker leaves of
/// it is removed by the next one, like every unfinished backup.
bool SnapshotRemoval::remove(const Snapshot& snapshot) {
    const auto unfinished = store_.withdraw(snapshot);
    if (!unfinished) {
        notes_.push_back("Cannot remove the old backup " + snapshot.name + ": " + unfinished.failure().text);
        return false;
    }
    if (!removeTree(store_.pathOf(*unfinished)))
        notes_.push_back("Cannot remove all of the old backup " + snapshot.name);
    return true;
}

} // namespace norvane
