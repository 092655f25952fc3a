// A user's backup schedule: plain values.
#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <variant>
#include <vector>

#include "platform/time/instant.h"

namespace norvane {

class Calendar;

/// The raw values are the Gregorian calendar's weekday numbers.
enum class Weekday : std::uint8_t {
    sunday = 1,
    monday,
    tuesday,
    wednesday,
    thursday,
    friday,
    saturday,
};

[[nodiscard]] constexpr int rawValue(Weekday weekday) { return static_cast<int>(weekday); }

namespace Weekdays {

inline constexpr std::array<Weekday, 7> allCases = {Weekday::sunday,    Weekday::monday,   Weekday::tuesday,
                                                    Weekday::wednesday, Weekday::thursday, Weekday::friday,
                                                    Weekday::saturday};

/// None unless `number` is 1…7.
[[nodiscard]] constexpr std::optional<Weekday> fromCalendarWeekday(std::int64_t number) {
    if (number < 1 || number > 7)
        return std::nullopt;
    return static_cast<Weekday>(number);
}

} // namespace Weekdays

/// A set of weekdays.
class WeekdaySet {
public:
    constexpr WeekdaySet() = default;
    constexpr WeekdaySet(std::initializer_list<Weekday> days) {
        for (const Weekday day : days)
            insert(day);
    }

    constexpr void insert(Weekday day) { bits_ = static_cast<std::uint8_t>(bits_ | bit(day)); }
    constexpr void remove(Weekday day) { bits_ = static_cast<std::uint8_t>(bits_ & ~bit(day)); }
    [[nodiscard]] constexpr bool contains(Weekday day) const { return (bits_ & bit(day)) != 0; }
    [[nodiscard]] constexpr bool empty() const { return bits_ == 0; }

    bool operator==(const WeekdaySet&) const = default;

private:
    static constexpr unsigned bit(Weekday day) { return 1U << (rawValue(day) - 1); }

    std::uint8_t bits_ = 0; // bit 0: Sunday
};

/// A wall-clock time without date.
struct TimeOfDay {
    std::int64_t hour = 0;
    std::int64_t minute = 0;

    constexpr TimeOfDay() = default;

    /// Limits the hour to 0…23 and the minute to 0…59.
    constexpr TimeOfDay(std::int64_t hourOfDay, std::int64_t minuteOfHour)
        : hour(std::clamp<std::int64_t>(hourOfDay, 0, 23)),
          minute(std::clamp<std::int64_t>(minuteOfHour, 0, 59)) {}

    /// The numbers as they are, for a stored time. One out of range names no time of any day.
    [[nodiscard]] static constexpr TimeOfDay unclamped(std::int64_t hour, std::int64_t minute) {
        TimeOfDay time;
        time.hour = hour;
        time.minute = minute;
        return time;
    }

    [[nodiscard]] constexpr std::int64_t minutesSinceMidnight() const {
        // Far past every time of day, so that whatever was stored the sums below and of callers stay in
        // range.
        constexpr std::int64_t limit = 1'000'000'000'000;
        return std::clamp(hour, -limit, limit) * 60 + std::clamp(minute, -limit, limit);
    }

    bool operator==(const TimeOfDay&) const = default;

    /// By minutesSinceMidnight().
    friend constexpr std::weak_ordering operator<=>(const TimeOfDay& left, const TimeOfDay& right) {
        return left.minutesSinceMidnight() <=> right.minutesSinceMidnight();
    }
};

/// The times of backups on one weekday, in any order; times may repeat.
struct WeekdaySlot {
    Weekday weekday = Weekday::sunday;
    std::vector<TimeOfDay> times;

    bool operator==(const WeekdaySlot&) const = default;
};

/// Case interval: every so many hours after the end of the previous backup. Stored as given; at work it
/// counts as 1…24.
struct IntervalRule {
    double hours = 0;

    bool operator==(const IntervalRule&) const = default;
};

/// Case dailyTimes: at these times every day.
struct DailyTimesRule {
    std::vector<TimeOfDay> times;

    bool operator==(const DailyTimesRule&) const = default;
};

/// Case weekdayTimes: of several slots for one weekday only the first counts.
struct WeekdayTimesRule {
    std::vector<WeekdaySlot> slots;

    bool operator==(const WeekdayTimesRule&) const = default;
};

using ScheduleRule = std::variant<IntervalRule, DailyTimesRule, WeekdayTimesRule>;

/// A stretch of time, recurring weekly, in which no scheduled backup may start.
struct BlackoutWindow {
    WeekdaySet days; ///< The weekdays on which an occurrence starts.
    TimeOfDay start;
    TimeOfDay end; ///< Earlier than `start`: on the following day. Equal to it: the window is empty.

    /// The length of an occurrence; 0 when it is empty.
    [[nodiscard]] std::int64_t durationMinutes() const;

    /// The end of the occurrence that contains `instant` (start included, end excluded), of several the
    /// latest; none when it lies in no occurrence. An occurrence lasts durationMinutes() of elapsed time;
    /// looked at are those that started on the instant's calendar day or on the day before.
    [[nodiscard]] std::optional<Instant> endOfOccurrenceContaining(Instant instant,
                                                                   const Calendar& calendar) const;

    bool operator==(const BlackoutWindow&) const = default;
};

/// Backups are due at the earliest instant that any rule gives, moved out of all blackout windows.
struct Schedule {
    std::vector<ScheduleRule> rules;
    std::vector<BlackoutWindow> blackouts;

    /// Every 4 hours.
    [[nodiscard]] static const Schedule& defaultSchedule();

    bool operator==(const Schedule&) const = default;
};

} // namespace norvane

template <>
struct std::hash<norvane::TimeOfDay> {
    std::size_t operator()(const norvane::TimeOfDay& time) const noexcept {
        const std::hash<std::int64_t> hashOf;
        return hashOf(time.hour) * 31 + hashOf(time.minute);
    }
};
