#include "scheduler_core/schedule.h"

#include "scheduler_core/calendar.h"

namespace norvane {

std::int64_t BlackoutWindow::durationMinutes() const {
    constexpr std::int64_t minutesPerDay = 1440;
    const std::int64_t from = start.minutesSinceMidnight();
    const std::int64_t to = end.minutesSinceMidnight();
    return from <= to ? to - from : minutesPerDay - from + to;
}

std::optional<Instant> BlackoutWindow::endOfOccurrenceContaining(Instant instant,
                                                                 const Calendar& calendar) const {
    const std::int64_t duration = durationMinutes();
    if (duration <= 0)
        return std::nullopt;
    std::optional<Instant> result;
    for (const std::int64_t offset : {-1, 0}) {
        const auto day = calendar.addingDays(offset, instant);
        const auto weekday = day ? Weekdays::fromCalendarWeekday(calendar.weekday(*day)) : std::nullopt;
        if (!weekday || !days.contains(*weekday))
            continue;
        const auto occurrenceStart = calendar.settingTime(start.hour, start.minute, *day);
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
