// Times and days of a schedule as views take them.
#pragma once

#include <QString>
#include <cmath>

#include "platform/translator.h"
#include "scheduler_core/schedule.h"
#include "ui/kit/view_values.h"

namespace norvane {

/// "4 h"
[[nodiscard]] inline QString hoursText(double hours, const Translator& texts) {
    return viewText(fillIn("%.0f", {std::round(hours)}) + texts.translate(" h"));
}

/// Minutes since midnight, within the day whatever is stored.
[[nodiscard]] inline int viewTime(const TimeOfDay& time) {
    return static_cast<int>(TimeOfDay(time.hour, time.minute).minutesSinceMidnight());
}

[[nodiscard]] inline TimeOfDay timeOfView(int minutes) { return {minutes / 60, minutes % 60}; }

/// Bit 0: Sunday.
[[nodiscard]] inline int viewDays(const WeekdaySet& days) {
    int mask = 0;
    for (const Weekday day : Weekdays::allCases)
        mask |= days.contains(day) ? 1 << (rawValue(day) - 1) : 0;
    return mask;
}

[[nodiscard]] inline WeekdaySet daysOfView(int mask) {
    WeekdaySet days;
    for (const Weekday day : Weekdays::allCases) {
        if ((mask >> (rawValue(day) - 1) & 1) != 0)
            days.insert(day);
    }
    return days;
}

inline constexpr WeekdaySet everyDay = {Weekday::sunday,    Weekday::monday,   Weekday::tuesday,
                                        Weekday::wednesday, Weekday::thursday, Weekday::friday,
                                        Weekday::saturday};

} // namespace norvane
