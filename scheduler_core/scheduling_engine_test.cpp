#include "scheduler_core/scheduling_engine.h"

#include <gtest/gtest.h>

#include "tests/support/test_times.h"

namespace norvane {

namespace {

using enum Weekday;

/// The bounds that the schedules of the property test do not come to.
TEST(SchedulingEngine, LooksTwoWeeksAheadAndMovesNinetyNineTimes) {
    const auto minutesInARow = [](int count) {
        Schedule schedule{.rules = {IntervalRule{1}}, .blackouts = {}};
        for (int i = 0; i < count; ++i)
            schedule.blackouts.push_back({{tuesday}, {i / 60, i % 60}, {(i + 1) / 60, (i + 1) % 60}});
        return schedule;
    };
    const Schedule noSuchTime{.rules = {DailyTimesRule{{TimeOfDay::unclamped(25, 0)}}}, .blackouts = {}};
    const Schedule fridays{.rules = {WeekdayTimesRule{{{friday, {{12, 0}}}}}}, .blackouts = {}};
    struct Case {
        const char* zone;
        Schedule schedule;
        const char* now;
        const char* date;
        const char* deferredFrom;
    };
    for (const auto& [name, schedule, now, date, deferredFrom] : {
             Case{"UTC", noSuchTime, "2024-01-02 10:00:00", "none", "none"},
             // After noon of a Friday; the next one is the day that the zone left out.
             Case{"Pacific/Apia", fridays, "2011-12-24 00:00:00", "2012-01-05 22:00:00", "none"},
             // A Tuesday.
             Case{"UTC", minutesInARow(99), "2024-01-02 00:00:00", "2024-01-02 01:39:00",
                  "2024-01-02 00:00:00"},
             Case{"UTC", minutesInARow(100), "2024-01-02 00:00:00", "none", "2024-01-02 00:00:00"},
         }) {
        const NextFire fire = SchedulingEngine::nextFire(schedule, std::nullopt, utc(now), zone(name));
        EXPECT_EQ(utcText(fire.date), date) << now;
        EXPECT_EQ(utcText(fire.deferredFrom), deferredFrom) << now;
    }
}

TEST(SchedulingEngine, TheEndsOfTimeAreHarmless) {
    const Schedule schedule{.rules = {IntervalRule{4}, DailyTimesRule{{{12, 0}}}},
                            .blackouts = {{{monday}, {22, 0}, {6, 0}}}};
    const Calendar calendar = zone("Europe/Berlin");
    for (const Instant now : {distantPast, utc("2024-01-02 10:00:00"), distantFuture}) {
        for (const Instant last : {distantPast, distantFuture}) {
            const auto date = SchedulingEngine::nextFire(schedule, last, now, calendar).date;
            EXPECT_TRUE(date && *date >= now);
        }
    }
}

} // namespace

} // namespace norvane
