#include "controller/planning.h"

#include <algorithm>

#include "scheduler_core/scheduling_engine.h"

namespace norvane {

namespace {

constexpr double skipMarginSeconds = 60;

} // namespace

Plan planNextFire(const PlanBounds& bounds, std::optional<Instant> lastBackup, const Schedule& schedule,
                  const Calendar& calendar, Instant now) {
    Instant earliest = std::max(now, bounds.launchGraceUntil);
    for (const auto& bound : {bounds.pausedUntil, bounds.retryFloor})
        earliest = std::max(earliest, bound.value_or(earliest));
    if (bounds.skipUntilAfter && !bounds.skipIsOver(now)) {
        // Interval rules count from the skipped occurrence, listed times lie behind it.
        lastBackup = std::max(*bounds.skipUntilAfter, lastBackup.value_or(*bounds.skipUntilAfter));
        earliest = std::max(earliest, plusSeconds(*bounds.skipUntilAfter, skipMarginSeconds));
    }
    const NextFire next = SchedulingEngine::nextFire(schedule, lastBackup, earliest, calendar);
    if (bounds.catchUpAt) {
        const auto catchUp = SchedulingEngine::pushPastBlackouts(std::max(earliest, *bounds.catchUpAt),
                                                                 schedule.blackouts, calendar);
        if (catchUp && (!next.date || *catchUp < *next.date))
            return {catchUp, std::nullopt, true};
    }
    return {next.date, next.deferredFrom};
}

double retryDelaySeconds(std::int64_t failureStreak) {
    constexpr double firstDelaySeconds = 900;
    constexpr std::int64_t longestFrom = 5;
    const auto doublings = std::clamp<std::int64_t>(failureStreak, 1, longestFrom) - 1;
    return firstDelaySeconds * static_cast<double>(1 << doublings);
}

} // namespace norvane
