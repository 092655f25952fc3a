#include "ui/settings/tabs/schedule_edit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace norvane {

namespace {

constexpr TimeOfDay noon{12, 0};

std::vector<TimeOfDay> sorted(std::vector<TimeOfDay> times) {
    std::stable_sort(times.begin(), times.end());
    return times;
}

/// Puts a stored rule into the controls.
struct Loading {
    ScheduleEdit edit;

    ScheduleEdit operator()(const IntervalRule& rule) {
        edit.mode = ScheduleEdit::Mode::interval;
        edit.hours = std::clamp(std::round(rule.hours), 1.0, 24.0);
        return edit;
    }

    ScheduleEdit operator()(const DailyTimesRule& rule) {
        edit.mode = ScheduleEdit::Mode::daily;
        edit.times = rule.times.empty() ? std::vector{noon} : sorted(rule.times);
        return edit;
    }

    ScheduleEdit operator()(const WeekdayTimesRule& rule) {
        edit.mode = ScheduleEdit::Mode::weekly;
        edit.weeklyRows = weeklyRows(rule.slots);
        return edit;
    }
};

} // namespace

std::vector<WeeklyRow> weeklyRows(const std::vector<WeekdaySlot>& slots) {
    std::vector<WeeklyRow> rows;
    for (const WeekdaySlot& slot : slots) {
        for (const TimeOfDay& time : slot.times) {
            auto row = std::find_if(rows.begin(), rows.end(),
                                    [&time](const WeeklyRow& known) { return known.time == time; });
            if (row == rows.end())
                row = rows.insert(rows.end(), {{}, time});
            row->days.insert(slot.weekday);
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const WeeklyRow& left, const WeeklyRow& right) { return left.time < right.time; });
    return rows.empty() ? ScheduleEdit().weeklyRows : rows;
}

std::vector<WeekdaySlot> weekdaySlots(const std::vector<WeeklyRow>& rows) {
    std::vector<WeekdaySlot> slots;
    for (const Weekday weekday : Weekdays::allCases) {
        std::vector<TimeOfDay> times;
        for (const WeeklyRow& row : rows) {
            if (row.days.contains(weekday))
                times.push_back(row.time);
        }
        if (!times.empty())
            slots.push_back({weekday, sorted(std::move(times))});
    }
    return slots;
}

ScheduleEdit withRuleOf(const Schedule& schedule, ScheduleEdit edit) {
    if (schedule.rules.empty())
        return edit;
    return std::visit(Loading{std::move(edit)}, schedule.rules.front());
}

ScheduleRule ruleOf(const ScheduleEdit& edit) {
    switch (edit.mode) {
    case ScheduleEdit::Mode::daily:
        return DailyTimesRule{sorted(edit.times)};
    case ScheduleEdit::Mode::weekly:
        return WeekdayTimesRule{weekdaySlots(edit.weeklyRows)};
    case ScheduleEdit::Mode::interval:
        break;
    }
    return IntervalRule{edit.hours};
}

bool crossesMidnight(const BlackoutWindow& window) { return window.end <= window.start; }

} // namespace norvane
