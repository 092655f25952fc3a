// When the next scheduled backup starts, and how long a failed one waits: decisions without effects.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/time/instant.h"
#include "scheduler_core/calendar.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// What bounds the next scheduled backup beside the schedule.
struct PlanBounds {
    Instant launchGraceUntil;                ///< No backup before it.
    std::optional<Instant> pausedUntil{};    ///< No backup before it.
    std::optional<Instant> retryFloor{};     ///< No backup before it.
    std::optional<Instant> skipUntilAfter{}; ///< The occurrence that the user skips.
    std::optional<Instant> catchUpAt{};      ///< A missed backup is made up for, not before it.

    /// The skipped occurrence is over, and bounds nothing any more.
    [[nodiscard]] bool skipIsOver(Instant now) const { return skipUntilAfter && *skipUntilAfter < now; }
};

struct Plan {
    std::optional<Instant> nextFire;
    std::optional<Instant> deferredFrom; ///< Where the schedule alone would have put it; a blackout moved it.
    bool catchUp = false;                ///< The fire makes up for a missed backup.

    bool operator==(const Plan&) const = default;
};

/// `lastBackup`: end of the last finished backup.
[[nodiscard]] Plan planNextFire(const PlanBounds& bounds, std::optional<Instant> lastBackup,
                                const Schedule& schedule, const Calendar& calendar, Instant now);

/// Seconds to wait after the failure that made the streak this long (1 or more): 15 minutes, doubling, at
/// most 4 hours.
[[nodiscard]] double retryDelaySeconds(std::int64_t failureStreak);

} // namespace norvane
