// What the preferences remember of a destination's backups, in the keys that Time Machine uses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/user_defaults_file.h"
#include "timemachine_linux/file_system_probe.h"
#include "timemachine_linux/result_code.h"
#include "timemachine_linux/snapshot_store.h"

namespace norvane {

/// Newest attempts kept in "AttemptDates".
inline constexpr std::size_t mostAttemptDates = 100;

struct AttemptEnd {
    BackupResult result;
    std::vector<std::string> notes;                 ///< Shown after the message.
    std::optional<std::vector<Snapshot>> snapshots; ///< None: the destination is away, what was known stays.
    std::optional<FileSystemSpace> space;
};

/// Both change the entry with this id and nothing else; without one nothing changes.
bool recordAttemptStart(UserDefaultsFile& preferences, const std::string& destinationId, Instant start);
bool recordAttemptEnd(UserDefaultsFile& preferences, const std::string& destinationId, const AttemptEnd& end);

} // namespace norvane
