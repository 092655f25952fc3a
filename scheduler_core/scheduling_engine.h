// When the next scheduled backup is due: pure functions, any thread.
#pragma once

#include <optional>
#include <vector>

#include "platform/time/instant.h"
#include "scheduler_core/calendar.h"
#include "scheduler_core/schedule.h"

namespace norvane {

struct NextFire {
    std::optional<Instant>
        date; ///< None: the schedule gives no backup, or the blackouts leave no room for one.
    std::optional<Instant>
        deferredFrom; ///< What the rules gave, when blackouts moved it or left no room for it.

    bool operator==(const NextFire&) const = default;
};

namespace SchedulingEngine {

/// The next backup at or after `now`. `lastBackup` is when the last successful one ended. Fixed times are
/// looked for today and on the 14 days after.
[[nodiscard]] NextFire nextFire(const Schedule& schedule, std::optional<Instant> lastBackup, Instant now,
                                const Calendar& calendar);

/// The first instant at or after `instant` that lies in no blackout; none when moving 100 times did not help.
[[nodiscard]] std::optional<Instant>
pushPastBlackouts(Instant instant, const std::vector<BlackoutWindow>& blackouts, const Calendar& calendar);

/// The length of an interval rule's step: 1 to 24 hours.
[[nodiscard]] double intervalSeconds(double hours);

} // namespace SchedulingEngine

} // namespace norvane
