#include "controller/planning.h"

#include <gtest/gtest.h>

#include "controller/controller_harness.h"

namespace norvane {
namespace {

TEST(Planning, TheLatestLowerBoundCounts) {
    const Calendar utc = *Calendar::inZone("UTC");
    const Schedule hourly{{IntervalRule{1}}, {}};
    PlanningState state{.now = minute(0), .launchGraceUntil = minute(-60), .lastBackup = minute(-600)};
    EXPECT_EQ(planNextFire(state, hourly, utc).nextFire, minute(0));
    state.launchGraceUntil = minute(5);
    state.pausedUntil = minute(-5); // not yet seen to be over
    EXPECT_EQ(planNextFire(state, hourly, utc).nextFire, minute(5));
    state.retryFloor = minute(15);
    EXPECT_EQ(planNextFire(state, hourly, utc).nextFire, minute(15));
    state.pausedUntil = minute(30);
    EXPECT_EQ(planNextFire(state, hourly, utc).nextFire, minute(30));
    state.catchUpAt = minute(10);
    EXPECT_EQ(planNextFire(state, hourly, utc).nextFire, minute(30)) << "a catch-up obeys the bounds as well";
    EXPECT_EQ(planNextFire(state, {}, utc).nextFire, minute(30)) << "and needs no rule";
}

TEST(Planning, ACatchUpWaitsOutABlackoutAndYieldsToARegularBackup) {
    const Calendar utc = *Calendar::inZone("UTC");
    const PlanningState state{.now = minute(0), .launchGraceUntil = minute(5), .catchUpAt = minute(5)};
    const auto dailyAt = [](TimeOfDay time) {
        return Schedule{{DailyTimesRule{{time}}},
                        {{{Weekday::thursday}, TimeOfDay(9, 0), TimeOfDay(10, 45)},
                         {{Weekday::thursday}, TimeOfDay(11, 0), TimeOfDay(12, 0)}}};
    };
    EXPECT_EQ(planNextFire(state, dailyAt({11, 30}), utc), (Plan{minute(45), {}, true, false}));
    EXPECT_EQ(planNextFire(state, dailyAt({10, 20}), utc), (Plan{minute(45), minute(20), false, false}));
}

TEST(Planning, ASkippedOccurrenceIsPassedOverUntilItLiesInThePast) {
    const Calendar utc = *Calendar::inZone("UTC");
    const Schedule every4Hours{{IntervalRule{4}}, {}};
    const Schedule daily{{DailyTimesRule{{TimeOfDay(11, 0), TimeOfDay(11, 1)}}}, {}};
    PlanningState state{.now = minute(0), .launchGraceUntil = minute(0), .lastBackup = minute(-180)};
    state.skipUntilAfter = minute(60);
    EXPECT_EQ(planNextFire(state, every4Hours, utc).nextFire, minute(60 + 240))
        << "counted from the skipped one";
    EXPECT_EQ(planNextFire(state, daily, utc).nextFire, minute(61));
    state.lastBackup = minute(90);
    EXPECT_EQ(planNextFire(state, every4Hours, utc).nextFire, minute(90 + 240)) << "the clock was set back";
    state.now = minute(60);
    EXPECT_FALSE(planNextFire(state, daily, utc).skipExpired);
    state.now = minute(61);
    state.lastBackup = minute(-180);
    EXPECT_TRUE(planNextFire(state, daily, utc).skipExpired);
    EXPECT_EQ(planNextFire(state, every4Hours, utc).nextFire, minute(61))
        << "the expired skip no longer counts";
}

TEST(Planning, RetryDelaysDoubleUpToFourHours) {
    const double expected[] = {900, 1800, 3600, 7200, 14400, 14400, 14400};
    for (std::int64_t streak = 1; streak <= 7; ++streak)
        EXPECT_EQ(retryDelaySeconds(streak), expected[streak - 1]) << streak;
    EXPECT_EQ(retryDelaySeconds(INT64_MAX), 14400);
    EXPECT_EQ(retryDelaySeconds(INT64_MIN), 900);
}

} // namespace
} // namespace norvane
