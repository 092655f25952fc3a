// When the next scheduled backup starts, and how long a failed one waits: decisions without effects.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/instant.h"
#include "scheduler_core/calendar.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// Everything beside the schedule that decides when the next backup starts.
struct PlanningState {
    Instant now;
    Instant launchGraceUntil;                   ///< No backup before it.
    std::optional<Instant> pausedUntil = {};    ///< No backup before it.
    std::optional<Instant> retryFloor = {};     ///< No backup before it.
    std::optional<Instant> lastBackup = {};     ///< End of the last finished backup.
    std::optional<Instant> skipUntilAfter = {}; ///< The occurrence that the user skips.
    std::optional<Instant> catchUpAt = {};      ///< A missed backup is made up for, not before it.
};

struct Plan {
    std::optional<Instant> nextFire;
    std::optional<Instant> deferredFrom; ///< Where the schedule alone would have put it; a blackout moved it.
    bool catchUp = false;                ///< The fire makes up for a missed backup.
    bool skipExpired = false;            ///< The skipped occurrence has passed.

    bool operator==(const Plan&) const = default;
};

[[nodiscard]] Plan planNextFire(const PlanningState& state, const Schedule& schedule,
                                const Calendar& calendar);

/// Seconds to wait after the failure that made the streak this long (1 or more): 15 minutes, doubling, at
/// most 4 hours.
[[nodiscard]] double retryDelaySeconds(std::int64_t failureStreak);

} // namespace norvane
