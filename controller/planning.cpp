#include "controller/planning.h"

#include <algorithm>

#include "scheduler_core/scheduling_engine.h"

namespace norvane {

namespace {

constexpr double skipMarginSeconds = 60;

} // namespace

Plan planNextFire(const PlanningState& state, const Schedule& schedule, const Calendar& calendar) {
    Plan plan;
    Instant earliest = std::max(state.now, state.launchGraceUntil);
    if (state.pausedUntil)
        earliest = std::max(earliest, *state.pausedUntil);
    if (state.retryFloor)
        earliest = std::max(earliest, *state.retryFloor);
    std::optional<Instant> last = state.lastBackup;
    if (const auto skipped = state.skipUntilAfter) {
        plan.skipExpired = *skipped < state.now;
        if (!plan.skipExpired) {
            // Interval rules count from the skipped occurrence, listed times lie behind it.
            last = std::max(*skipped, last.value_or(*skipped));
            earliest = std::max(earliest, plusSeconds(*skipped, skipMarginSeconds));
        }
    }
    const NextFire next = SchedulingEngine::nextFire(schedule, last, earliest, calendar);
    plan.nextFire = next.date;
    plan.deferredFrom = next.deferredFrom;
    if (state.catchUpAt) {
        const auto catchUp = SchedulingEngine::pushPastBlackouts(std::max(earliest, *state.catchUpAt),
                                                                 schedule.blackouts, calendar);
        if (catchUp && (!plan.nextFire || *catchUp < *plan.nextFire)) {
            plan.nextFire = catchUp;
            plan.deferredFrom.reset();
            plan.catchUp = true;
        }
    }
    return plan;
}

double retryDelaySeconds(std::int64_t failureStreak) {
    constexpr double firstDelaySeconds = 900;
    constexpr std::int64_t longestFrom = 5;
    const auto doublings = std::clamp<std::int64_t>(failureStreak, 1, longestFrom) - 1;
    return firstDelaySeconds * static_cast<double>(1 << doublings);
}

} // namespace norvane
