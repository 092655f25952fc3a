// Generated schedules around clock changes, against a plain search through the C library's clock.

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <rapidcheck.h>

#include "scheduler_core/schedule_json.h"
#include "scheduler_core/scheduling_engine.h"
#include "tests/support/test_times.h"
#include "tests/support/wall_clock_table.h"

namespace norvane {

std::ostream& operator<<(std::ostream& stream, const NextFire& fire) {
    return stream << utcText(fire.date) << " deferred from " << utcText(fire.deferredFrom);
}

namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr hours day{24};
constexpr int daysBefore = 13;
constexpr int daysAfter = 48;

// Zones, and in each a day around which something happens.
constexpr std::pair<const char*, const char*> clockChanges[] = {
    {"UTC", "2024-02-29"},
    {"Asia/Kathmandu", "2024-01-01"},
    {"Europe/Berlin", "2024-03-31"},
    {"Europe/Berlin", "2024-10-27"},
    {"America/Toronto", "2024-11-03"},
    {"America/Sao_Paulo", "2017-10-15"},
    {"America/Havana", "2024-11-03"},
    {"America/Sao_Paulo", "2018-02-18"},
    {"Asia/Beirut", "2024-03-31"},
    {"Africa/Cairo", "2024-04-26"},
    {"Australia/Lord_Howe", "2024-10-06"},
    {"Australia/Lord_Howe", "2025-04-06"},
    {"Pacific/Apia", "2011-12-30"},
    {"America/Nuuk", "2024-03-31"},
    {"Europe/Berlin", "2061-03-27"},
};

struct Case {
    const WallClockTable& table;
    Schedule schedule;
    std::optional<Instant> lastBackup;
    Instant now;

    [[nodiscard]] std::vector<TimeOfDay> timesOn(const ScheduleRule& rule, Weekday weekday) const {
        if (const auto* daily = std::get_if<DailyTimesRule>(&rule))
            return daily->times;
        for (const WeekdaySlot& slot : std::get<WeekdayTimesRule>(rule).slots) {
            if (slot.weekday == weekday)
                return slot.times;
        }
        return {};
    }

    /// What the rules give without blackouts.
    [[nodiscard]] std::optional<Instant> due() const {
        std::vector<Instant> all;
        for (const ScheduleRule& rule : schedule.rules) {
            if (const auto* interval = std::get_if<IntervalRule>(&rule)) {
                const minutes step(std::lround(std::clamp(interval->hours, 1.0, 24.0) * 60));
                all.push_back(lastBackup ? std::max(*lastBackup + step, now) : now);
                continue;
            }
            const std::int64_t today = table.days()[table.dayOf(now)].number;
            for (const WallClockTable::Day& each : table.days()) {
                if (each.number < today || each.number > today + 14)
                    continue;
                for (const TimeOfDay time : timesOn(rule, each.weekday)) {
                    if (table.at(each, time) >= now)
                        all.push_back(table.at(each, time));
                }
            }
        }
        return all.empty() ? std::nullopt : std::optional(*std::ranges::min_element(all));
    }

    [[nodiscard]] bool isBlocked(Instant instant) const {
        const std::size_t today = table.dayOf(instant);
        return std::ranges::any_of(schedule.blackouts, [&](const BlackoutWindow& window) {
            const auto from = window.start.minutesSinceMidnight();
            const minutes length((window.end.minutesSinceMidnight() - from + 1440) % 1440);
            return std::ranges::any_of(std::array{today - 1, today}, [&](std::size_t index) {
                const WallClockTable::Day& each = table.days().at(index);
                const Instant start = table.at(each, window.start);
                return window.days.contains(each.weekday) && start <= instant && instant < start + length;
            });
        });
    }

    /// The first free instant; none when there is none in the 16 days that 100 moves span at least.
    [[nodiscard]] std::optional<Instant> firstFree(Instant instant) const {
        const Instant end = instant + 16 * day;
        while (instant < end && isBlocked(instant))
            instant = std::chrono::floor<minutes>(instant) + minutes(1);
        return instant < end ? std::optional(instant) : std::nullopt;
    }
};

int draw(int first, int last) {
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(first, last + 1));
}

// Every other time is one at which clocks change somewhere.
TimeOfDay drawTime() {
    constexpr std::array critical = {0, 1, 30, 60, 90, 120, 135, 150, 180, 1380, 1410, 1439};
    const int choice = draw(0, 23);
    const int minute = choice < 12 ? critical.at(static_cast<std::size_t>(choice)) : draw(0, 1439);
    return {minute / 60, minute % 60};
}

Weekday drawWeekday() { return *Weekdays::fromCalendarWeekday(draw(1, 7)); }

template <class Draw>
auto drawList(int most, const Draw& drawOne) {
    std::vector<decltype(drawOne())> list;
    for (int count = draw(0, most); count > 0; --count)
        list.push_back(drawOne());
    return list;
}

ScheduleRule drawRule() {
    switch (draw(0, 2)) {
    case 0:
        return IntervalRule{draw(-4, 120) / 4.0};
    case 1:
        return DailyTimesRule{drawList(3, drawTime)};
    default:
        return WeekdayTimesRule{drawList(
            4, [] { return WeekdaySlot{.weekday = drawWeekday(), .times = drawList(2, drawTime)}; })};
    }
}

BlackoutWindow drawBlackout() {
    BlackoutWindow window{.days = {}, .start = drawTime(), .end = drawTime()};
    // A longer one can outlast a following day of 23 hours, and nothing looks back further than to yesterday.
    if (window.durationMinutes() > 23 * 60)
        window.end = window.start;
    for (int number = draw(0, 127), bit = 1; number > 0; number /= 2, ++bit) {
        if (number % 2 == 1)
            window.days.insert(*Weekdays::fromCalendarWeekday(bit));
    }
    return window;
}

// Half of the instants are whole minutes, where listed times and blackouts begin and end.
Instant drawInstant(const WallClockTable& table) {
    const Instant instant = table.begin() + day * (daysBefore - 9) + minutes(draw(0, 20 * 1440));
    return draw(0, 1) == 0 ? instant : instant + std::chrono::microseconds(draw(1, 59'999'999));
}

void check(const Case& test, const Calendar& calendar) {
    const auto fireAt = [&](Instant now) {
        return SchedulingEngine::nextFire(test.schedule, test.lastBackup, now, calendar);
    };
    const NextFire fire = fireAt(test.now);
    const auto due = test.due();
    const auto free = due ? test.firstFree(*due) : std::nullopt;
    if (free || !due) {
        RC_ASSERT(fire == (NextFire{.date = free, .deferredFrom = free == due ? std::nullopt : due}));
    } else {
        RC_ASSERT(fire.deferredFrom == due);
        RC_ASSERT((!fire.date || *fire.date >= *due + 16 * day));
    }
    const NextFire later = fireAt(test.now + minutes(draw(0, 3 * 1440)));
    // In parentheses of its own: the macro takes an expression apart and evaluates both sides of an "||".
    RC_ASSERT((!later.date || !fire.date || *later.date >= *fire.date));
    RC_ASSERT(fireAt(test.now) == fire);
    RC_ASSERT(decodeSchedule(encodeSchedule(test.schedule).value()).value == test.schedule);
}

TEST(SchedulingProperties, HoldAroundClockChanges) {
    setenv("RC_PARAMS", "max_success=50000 seed=1", 0);
    std::vector<WallClockTable> tables;
    for (const auto& [name, date] : clockChanges)
        tables.emplace_back(name, utc(std::string(date) + " 00:00:00") - day * daysBefore,
                            daysBefore + daysAfter);
    unsetenv("TZ");
    EXPECT_TRUE(rc::check("the engine finds what a plain search finds", [&tables] {
        const auto& table = tables.at(static_cast<std::size_t>(draw(0, static_cast<int>(tables.size()) - 1)));
        const Case test{.table = table,
                        .schedule = {.rules = drawList(2, drawRule), .blackouts = drawList(5, drawBlackout)},
                        .lastBackup = draw(0, 9) == 0 ? std::nullopt : std::optional(drawInstant(table)),
                        .now = drawInstant(table)};
        RC_LOG() << table.zone() << ", now " << utcText(test.now) << ", last " << utcText(test.lastBackup)
                 << ", " << encodeSchedule(test.schedule).value() << '\n';
        check(test, zone(table.zone()));
    }));
}

} // namespace

} // namespace norvane
