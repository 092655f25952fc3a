#include "scheduler_core/scheduling_engine.h"

#include <algorithm>

namespace norvane::SchedulingEngine {

namespace {

std::optional<Instant> earlier(std::optional<Instant> left, std::optional<Instant> right) {
    if (!left || !right)
        return left ? left : right;
    return std::min(left, right);
}

// `timesOn` gives the list for a weekday, or null. The first day with a time that has not passed decides.
template <class TimesOn>
std::optional<Instant> nextTimeOnDays(const TimesOn& timesOn, Instant now, const Calendar& calendar) {
    constexpr int daysAhead = 14;
    const Instant todayStart = calendar.startOfDay(now);
    for (int offset = 0; offset <= daysAhead; ++offset) {
        const auto day = calendar.addingDays(offset, todayStart);
        const auto weekday = day ? Weekdays::fromCalendarWeekday(calendar.weekday(*day)) : std::nullopt;
        const std::vector<TimeOfDay>* times = weekday ? timesOn(*weekday) : nullptr;
        if (!times)
            continue;
        std::optional<Instant> earliest;
        for (const TimeOfDay& time : *times) {
            const auto instant = calendar.settingTime(time.hour, time.minute, *day);
            if (instant && *instant >= now)
                earliest = earlier(earliest, instant);
        }
        if (earliest)
            return earliest;
    }
    return std::nullopt;
}

const std::vector<TimeOfDay>* timesForWeekday(const std::vector<WeekdaySlot>& slots, Weekday weekday) {
    const auto slot = std::ranges::find(slots, weekday, &WeekdaySlot::weekday);
    return slot == slots.end() ? nullptr : &slot->times;
}

struct RuleCandidate {
    std::optional<Instant> lastBackup;
    Instant now;
    const Calendar& calendar;

    std::optional<Instant> operator()(const IntervalRule& rule) const {
        if (!lastBackup)
            return now;
        return std::max(now, plusSeconds(*lastBackup, intervalSeconds(rule.hours)));
    }

    std::optional<Instant> operator()(const DailyTimesRule& rule) const {
        return nextTimeOnDays([&rule](Weekday) { return &rule.times; }, now, calendar);
    }

    std::optional<Instant> operator()(const WeekdayTimesRule& rule) const {
        return nextTimeOnDays([&rule](Weekday weekday) { return timesForWeekday(rule.slots, weekday); }, now,
                              calendar);
    }
};

} // namespace

NextFire nextFire(const Schedule& schedule, std::optional<Instant> lastBackup, Instant now,
                  const Calendar& calendar) {
    std::optional<Instant> earliest;
    for (const ScheduleRule& rule : schedule.rules)
        earliest = earlier(earliest, std::visit(RuleCandidate{lastBackup, now, calendar}, rule));
    if (!earliest)
        return {};
    const auto adjusted = pushPastBlackouts(*earliest, schedule.blackouts, calendar);
    return {.date = adjusted, .deferredFrom = adjusted == earliest ? std::nullopt : earliest};
}

std::optional<Instant> pushPastBlackouts(Instant instant, const std::vector<BlackoutWindow>& blackouts,
                                         const Calendar& calendar) {
    constexpr int maxRounds = 100;
    if (blackouts.empty())
        return instant;
    Instant candidate = instant;
    for (int round = 0; round < maxRounds; ++round) {
        std::optional<Instant> latestEnd;
        for (const BlackoutWindow& window : blackouts)
            latestEnd = std::max(latestEnd, window.endOfOccurrenceContaining(candidate, calendar));
        if (!latestEnd)
            return candidate;
        candidate = *latestEnd;
    }
    return std::nullopt;
}

double intervalSeconds(double hours) {
    constexpr double secondsPerHour = 3600;
    return hours > 1 ? std::min(hours, 24.0) * secondsPerHour : secondsPerHour;
}

} // namespace norvane::SchedulingEngine
