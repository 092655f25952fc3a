#include "scheduler_core/scheduling_engine.h"

#include <gtest/gtest.h>

#include "scheduler_core/test_times.h"

namespace norvane {
namespace {

using enum Weekday;

struct FireCase {
    const char* name;
    Schedule schedule;
    const char* lastBackup; // null: never
    const char* now;
    const char* date;
    const char* deferredFrom = "none";
    const char* zone = "UTC";
};

void expectFires(const std::vector<FireCase>& cases) {
    for (const auto& [name, schedule, lastBackup, now, date, deferredFrom, zoneName] : cases) {
        const auto last = lastBackup ? std::optional(utc(lastBackup)) : std::nullopt;
        const NextFire fire = SchedulingEngine::nextFire(schedule, last, utc(now), zone(zoneName));
        EXPECT_EQ(utcText(fire.date), date) << name;
        EXPECT_EQ(utcText(fire.deferredFrom), deferredFrom) << name;
    }
}

// 2024-01-01 is a Monday.

TEST(SchedulingEngine, IntervalsCountFromTheLastBackup) {
    const auto every = [](double hours) { return Schedule{.rules = {IntervalRule{hours}}, .blackouts = {}}; };
    expectFires({
        {"no rules", {}, nullptr, "2024-01-02 10:00:00", "none"},
        {"first backup", every(4), nullptr, "2024-01-02 10:00:00", "2024-01-02 10:00:00"},
        {"due later", every(4), "2024-01-02 08:00:00", "2024-01-02 10:00:00", "2024-01-02 12:00:00"},
        {"overdue", every(4), "2024-01-02 08:00:00", "2024-01-02 13:00:00", "2024-01-02 13:00:00"},
        {"at least an hour", every(-2), "2024-01-02 08:00:00", "2024-01-02 08:00:00", "2024-01-02 09:00:00"},
        {"at most a day", every(30), "2024-01-02 08:00:00", "2024-01-02 08:00:00", "2024-01-03 08:00:00"},
        {"fractions count", every(1.5), "2024-01-02 08:00:00", "2024-01-02 08:00:00", "2024-01-02 09:30:00"},
        {"elapsed hours", every(4), "2024-03-31 00:00:00", "2024-03-31 00:00:00", "2024-03-31 04:00:00",
         "none", "Europe/Berlin"},
        {"clock set back", every(4), "2024-01-05 08:00:00", "2024-01-02 08:00:00", "2024-01-05 12:00:00"},
    });
}

TEST(SchedulingEngine, FixedTimesAreLookedForFromToday) {
    const auto daily = [](std::vector<TimeOfDay> times) {
        return Schedule{.rules = {DailyTimesRule{std::move(times)}}, .blackouts = {}};
    };
    const auto weekly = [](std::vector<WeekdaySlot> slots) {
        return Schedule{.rules = {WeekdayTimesRule{std::move(slots)}}, .blackouts = {}};
    };
    const auto evening = daily({{18, 0}, {9, 0}});
    const auto twoMondays = weekly({{monday, {{12, 0}}}, {monday, {{8, 0}}}});
    Schedule both = daily({{11, 0}});
    both.rules.insert(both.rules.begin(), IntervalRule{6});
    expectFires({
        {"later today", evening, nullptr, "2024-01-02 10:00:00", "2024-01-02 18:00:00"},
        {"tomorrow", evening, nullptr, "2024-01-02 19:00:00", "2024-01-03 09:00:00"},
        {"now", evening, nullptr, "2024-01-02 09:00:00", "2024-01-02 09:00:00"},
        {"a moment ago", evening, nullptr, "2024-01-02 09:00:00.000001", "2024-01-02 18:00:00"},
        {"no times", daily({}), nullptr, "2024-01-02 10:00:00", "none"},
        {"no such time", daily({TimeOfDay::unclamped(25, 0)}), nullptr, "2024-01-02 10:00:00", "none"},
        {"next week", weekly({{monday, {{12, 0}}}}), nullptr, "2024-01-01 13:00:00", "2024-01-08 12:00:00"},
        {"first slot counts", twoMondays, nullptr, "2024-01-01 06:00:00", "2024-01-01 12:00:00"},
        {"first slot empty", weekly({{monday, {}}, {monday, {{8, 0}}}}), nullptr, "2024-01-01 06:00:00",
         "none"},
        {"earliest rule", both, "2024-01-02 06:00:00", "2024-01-02 10:00:00", "2024-01-02 11:00:00"},
        {"into the gap", daily({{2, 30}}), nullptr, "2024-03-31 00:00:00", "2024-03-31 01:00:00", "none",
         "Europe/Berlin"},
        {"only the first 02:30", daily({{2, 30}}), nullptr, "2024-10-27 00:45:00", "2024-10-28 01:30:00",
         "none", "Europe/Berlin"},
        {"a skipped Friday", weekly({{friday, {{12, 0}}}}), nullptr, "2011-12-29 12:00:00",
         "2012-01-05 22:00:00", "none", "Pacific/Apia"},
    });
}

TEST(SchedulingEngine, BlackoutsPushBackupsBack) {
    const auto blocked = [](ScheduleRule rule, std::vector<BlackoutWindow> blackouts) {
        return Schedule{.rules = {std::move(rule)}, .blackouts = std::move(blackouts)};
    };
    const DailyTimesRule noon{{{12, 0}}};
    const IntervalRule always{1};
    const WeekdaySet everyDay{sunday, monday, tuesday, wednesday, thursday, friday, saturday};
    const BlackoutWindow lunch{{tuesday}, {11, 0}, {13, 0}};
    const BlackoutWindow afternoon{{tuesday}, {13, 0}, {15, 0}};
    const BlackoutWindow night{{monday}, {22, 0}, {6, 0}};
    const std::vector<BlackoutWindow> wholeWeek = {{everyDay, {0, 0}, {12, 0}}, {everyDay, {12, 0}, {0, 0}}};
    expectFires({
        {"one", blocked(noon, {lunch}), nullptr, "2024-01-02 10:00:00", "2024-01-02 13:00:00",
         "2024-01-02 12:00:00"},
        {"overnight", blocked(always, {night}), nullptr, "2024-01-02 02:00:00", "2024-01-02 06:00:00",
         "2024-01-02 02:00:00"},
        {"chained, listed backwards", blocked(noon, {afternoon, lunch}), nullptr, "2024-01-02 10:00:00",
         "2024-01-02 15:00:00", "2024-01-02 12:00:00"},
        {"its end is free", blocked(always, {lunch}), nullptr, "2024-01-02 13:00:00", "2024-01-02 13:00:00"},
        {"no room", blocked(always, wholeWeek), nullptr, "2024-01-02 02:00:00", "none",
         "2024-01-02 02:00:00"},
        {"empty window", blocked(noon, {{everyDay, {12, 0}, {12, 0}}}), nullptr, "2024-01-02 10:00:00",
         "2024-01-02 12:00:00"},
    });
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
