#include "controller/planning.h"

#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace norvane {

namespace {

const Calendar utc = *Calendar::inZone("UTC");

TEST(Planning, TheLatestLowerBoundCounts) {
    const auto next = [](const PlanBounds& bounds, const Schedule& schedule) {
        return planNextFire(bounds, minute(-600), schedule, utc, minute(0)).nextFire;
    };
    const Schedule hourly{{IntervalRule{1}}, {}};
    PlanBounds bounds{minute(-60)};
    EXPECT_EQ(next(bounds, hourly), minute(0));
    bounds.launchGraceUntil = minute(5);
    bounds.pausedUntil = minute(-5); // not yet seen to be over
    EXPECT_EQ(next(bounds, hourly), minute(5));
    bounds.retryFloor = minute(15);
    EXPECT_EQ(next(bounds, hourly), minute(15));
    bounds.pausedUntil = minute(30);
    EXPECT_EQ(next(bounds, hourly), minute(30));
    bounds.catchUpAt = minute(10);
    EXPECT_EQ(next(bounds, hourly), minute(30)) << "a catch-up obeys the bounds as well";
    EXPECT_EQ(next(bounds, {}), minute(30)) << "and needs no rule";
}

TEST(Planning, ACatchUpWaitsOutABlackoutAndYieldsToARegularBackup) {
    const PlanBounds bounds{.launchGraceUntil = minute(5), .catchUpAt = minute(5)};
    const auto planFor = [&](TimeOfDay time) {
        const Schedule daily{{DailyTimesRule{{time}}},
                             {{{Weekday::thursday}, TimeOfDay(9, 0), TimeOfDay(10, 45)},
                              {{Weekday::thursday}, TimeOfDay(11, 0), TimeOfDay(12, 0)}}};
        return planNextFire(bounds, {}, daily, utc, minute(0));
    };
    EXPECT_EQ(planFor({11, 30}), (Plan{minute(45), {}, true}));
    EXPECT_EQ(planFor({10, 20}), (Plan{minute(45), minute(20), false}));
}

TEST(Planning, ASkippedOccurrenceIsPassedOverUntilItLiesInThePast) {
    const Schedule every4Hours{{IntervalRule{4}}, {}};
    const Schedule daily{{DailyTimesRule{{TimeOfDay(11, 0), TimeOfDay(11, 1)}}}, {}};
    const PlanBounds bounds{.launchGraceUntil = minute(0), .skipUntilAfter = minute(60)};
    const auto next = [&](const Schedule& schedule, double now, double lastBackup) {
        return planNextFire(bounds, minute(lastBackup), schedule, utc, minute(now)).nextFire;
    };
    EXPECT_EQ(next(every4Hours, 0, -180), minute(60 + 240)) << "counted from the skipped one";
    EXPECT_EQ(next(daily, 0, -180), minute(61));
    EXPECT_EQ(next(every4Hours, 0, 90), minute(90 + 240)) << "the clock was set back";
    EXPECT_EQ(next(every4Hours, 60, -180), minute(60 + 240)) << "not over yet";
    EXPECT_EQ(next(every4Hours, 61, -180), minute(61));
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
