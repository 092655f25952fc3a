#include "scheduler_core/schedule.h"

#include "scheduler_core/calendar.h"

namespace norvane {

OccurrenceDays occurrenceDays(Instant instant, const Calendar& calendar) {
    OccurrenceDays result;
    for (std::size_t index = 0; index < result.size(); ++index) {
        const auto day = calendar.addingDays(index == 0 ? -1 : 0, instant);
        const auto weekday = day ? Weekdays::fromCalendarWeekday(calendar.weekday(*day)) : std::nullopt;
        if (weekday)
            result.at(index) = {.within = *day, .weekday = *weekday};
    }
    return result;
}

std::int64_t BlackoutWindow::durationMinutes() const {
    constexpr std::int64_t minutesPerDay = 1440;
    const std::int64_t from = start.minutesSinceMidnight();
    const std::int64_t to = end.minutesSinceMidnight();
    return from <= to ? to - from : minutesPerDay - from + to;
}

std::optional<Instant> BlackoutWindow::endOfOccurrenceContaining(Instant instant,
                                                                 const Calendar& calendar) const {
    return endOfOccurrenceContaining(instant, occurrenceDays(instant, calendar), calendar);
}

std::optional<Instant> BlackoutWindow::endOfOccurrenceContaining(Instant instant,
                                                                 const OccurrenceDays& startDays,
                                                                 const Calendar& calendar) const {
    const std::int64_t duration = durationMinutes();
    if (duration <= 0)
        return std::nullopt;
    std::optional<Instant> result;
    for (const auto& day : startDays) {
        if (!day || !days.contains(day->weekday))
            continue;
        const auto occurrenceStart = calendar.settingTime(start.hour, start.minute, day->within);
        if (!occurrenceStart || instant < *occurrenceStart)
            continue;
        const auto occurrenceEnd = calendar.addingMinutes(duration, *occurrenceStart);
        if (occurrenceEnd && instant < *occurrenceEnd)
            result = std::max(result, occurrenceEnd);
    }
    return result;
}

const Schedule& Schedule::defaultSchedule() {
    static const Schedule schedule{.rules = {IntervalRule{.hours = 4}}, .blackouts = {}};
    return schedule;
}

} // namespace norvane
