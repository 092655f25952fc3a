// A schedule in the form in which users edit it, and back.
#pragma once

#include <cstdint>
#include <vector>

#include "scheduler_core/schedule.h"

namespace norvane {

/// One time on some days of the week.
struct WeeklyRow {
    WeekdaySet days;
    TimeOfDay time;

    bool operator==(const WeeklyRow&) const = default;
};

/// One row for each distinct time, in ascending order; {Monday, Wednesday, Friday} at 12:00 when no slot has
/// a time.
[[nodiscard]] std::vector<WeeklyRow> weeklyRows(const std::vector<WeekdaySlot>& slots);

/// One slot for each weekday that some row has, Sunday first, its times ascending.
[[nodiscard]] std::vector<WeekdaySlot> weekdaySlots(const std::vector<WeeklyRow>& rows);

/// What the controls for the rule hold: of each mode its own part, whichever mode is chosen.
struct ScheduleEdit {
    enum class Mode { interval, daily, weekly };

    Mode mode = Mode::interval;
    double hours = 4; ///< 1 to 24.
    std::vector<TimeOfDay> times = {{12, 0}};
    std::vector<WeeklyRow> weeklyRows = {{{Weekday::monday, Weekday::wednesday, Weekday::friday}, {12, 0}}};

    bool operator==(const ScheduleEdit&) const = default;
};

/// `edit` with the schedule's first rule in the form that the controls can show. Without a rule it is as it
/// was.
[[nodiscard]] ScheduleEdit withRuleOf(const Schedule& schedule, ScheduleEdit edit);

/// The rule of the chosen mode.
[[nodiscard]] ScheduleRule ruleOf(const ScheduleEdit& edit);

/// A window whose end is not later than its start.
[[nodiscard]] bool crossesMidnight(const BlackoutWindow& window);

} // namespace norvane
