// What the preferences remember of a destination's backups, in the keys that Time Machine uses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/files/user_defaults_file.h"
#include "timemachine_linux/files/file_system_probe.h"
#include "timemachine_linux/session/result_code.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

/// What a destination that is there holds of one machine.
struct DestinationContents {
    std::vector<Snapshot> snapshots;
    std::optional<FileSystemSpace> space;
};

[[nodiscard]] DestinationContents contentsOf(const SnapshotStore& store);

/// Into an entry of "Destinations".
void storeContents(PropertyList::Dictionary& entry, const DestinationContents& contents);

struct AttemptEnd {
    std::optional<BackupFailure> failure;
    std::vector<std::string> notes;              ///< Shown after the failure.
    std::optional<DestinationContents> contents; ///< None: the destination is away, what was known stays.
};

/// Both change the entry with this id and nothing else; without one nothing changes.
bool recordAttemptStart(UserDefaultsFile& preferences, const std::string& destinationId, Instant start);
bool recordAttemptEnd(UserDefaultsFile& preferences, const std::string& destinationId, const AttemptEnd& end);

} // namespace norvane
