// Starting and stopping a backup from outside.
#pragma once

#include <optional>

#include "platform/linux/files/user_defaults_file.h"
#include "platform/time/clock.h"
#include "timemachine_linux/session/backup_session_state.h"
#include "timemachine_linux/session/result_code.h"
#include "timemachine_linux/sources/source_lists.h"

namespace norvane {

struct StartOutcome {
    std::optional<BackupFailure> failure; ///< Of the start; with `wait`, of the whole backup.
    bool alreadyRunning = false;
};

/// Starts a worker and returns when it is certainly going or, with `wait`, when the backup has ended. What
/// makes a backup impossible from the start is found out and recorded here already.
[[nodiscard]] StartOutcome startBackup(const Clock& clock, UserDefaultsFile& preferences,
                                       const UserPlaces& places, bool wait);

/// Asks the running worker, if any, to stop; does not wait. False: it runs but cannot be asked.
bool stopBackup(const SessionFiles& files);

} // namespace norvane
