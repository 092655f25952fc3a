// What the controller publishes for the views.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/time/instant.h"
#include "scheduler_core/conditions_config.h"
#include "scheduler_core/schedule.h"
#include "timemachine/health_data.h"
#include "timemachine/tm_status.h"

namespace norvane {

/// A due backup that waits for the conditions to allow it.
struct DeferralInfo {
    std::vector<std::string> reasons; ///< As the user reads them.
    Instant originalDue;              ///< When the backup first became due.
    Instant forceAt;                  ///< When it runs regardless.
    Instant nextCheck;                ///< When the conditions are looked at again; never after forceAt.

    bool operator==(const DeferralInfo&) const = default;
};

enum class BackupHealth { ok, stale, critical };

/// "ok", "stale" or "critical".
[[nodiscard]] const char* rawValue(BackupHealth health);

struct ControllerState {
    TMStatus status;                       ///< Last parsed `tmutil status`.
    std::optional<Instant> nextFire;       ///< None: nothing is planned, or a backup is requested or runs.
    std::optional<Instant> deferredFrom;   ///< Where nextFire would be without the blackout windows.
    std::optional<Instant> pausedUntil;    ///< The schedule rests until then.
    std::optional<Instant> lastBackupDate; ///< End of the last finished backup.
    bool skipArmed = false;                ///< The next occurrence will be skipped.
    std::string lastEvent = "Launched";    ///< The last event a user cares about.
    std::optional<std::string> destinationName;
    Schedule schedule;
    std::optional<bool> autoBackupOn; ///< Time Machine's own automatic backups; none: not known yet.
    ConditionsConfig conditions;
    std::optional<DeferralInfo> deferral;
    bool catchUpPending = false; ///< nextFire makes up for a missed backup.
    bool stalled = false;        ///< The running backup has copied nothing for 10 minutes.
    BackupHealth health = BackupHealth::ok;
    std::optional<HealthData> healthData;
    std::int64_t accentEpoch = 0;                  ///< Counts changes of the desktop's accent colour.
    std::optional<std::string> pendingCrashReport; ///< Path of a report waiting to be sent or dismissed.
};

} // namespace norvane
