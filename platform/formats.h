// Dates, times and quantities as the user's locale writes them: the one formatting place.
#pragma once

#include <cstdint>
#include <string>

#include "platform/time/instant.h"

namespace norvane {

class Formats {
public:
    virtual ~Formats() = default;

    /// Time without date, short, in the user's time zone: "9:07 AM".
    [[nodiscard]] virtual std::string shortTime(Instant instant) const = 0;

    /// Abbreviated date and short time: "Mar 5, 2026, 9:07 AM".
    [[nodiscard]] virtual std::string dateAndTime(Instant instant) const = 0;

    /// The same without the time: "Mar 5, 2026".
    [[nodiscard]] virtual std::string abbreviatedDate(Instant instant) const = 0;

    /// Abbreviated month and day, for scales: "Mar 5".
    [[nodiscard]] virtual std::string monthAndDay(Instant instant) const = 0;

    /// Date, time and seconds: "Mar 5, 2026, 9:07:02 AM".
    [[nodiscard]] virtual std::string dateAndTimeWithSeconds(Instant instant) const = 0;

    /// How far the instant is from `now`, either way, in one unit, with a name where there is one: "in 2
    /// hours", "tomorrow". From a day on it counts the calendar's days.
    [[nodiscard]] virtual std::string relativeTime(Instant instant, Instant now) const = 0;

    /// The clock of the locale shows hours from 0 to 23, not halves of the day.
    [[nodiscard]] virtual bool uses24Hours() const = 0;

    /// The name of a half of the day: "AM", or "PM" for the afternoon.
    [[nodiscard]] virtual std::string dayHalf(bool afternoon) const = 0;

    /// A day of the week standing alone; 1 (Sunday) to 7 (Saturday): "Monday".
    [[nodiscard]] virtual std::string weekdayName(int weekday) const = 0;

    /// The same in one letter or two: "M".
    [[nodiscard]] virtual std::string weekdaySymbol(int weekday) const = 0;

    /// The day that weeks begin with; 1 (Sunday) to 7 (Saturday).
    [[nodiscard]] virtual int firstWeekday() const = 0;

    /// A stretch of time, at least 0 seconds, in its two largest units: "2 hr, 13 min", "45 sec".
    [[nodiscard]] virtual std::string elapsedTime(double seconds) const = 0;

    /// A stretch of time in the one unit of hours, minutes and seconds that fits best: "5 minutes".
    [[nodiscard]] virtual std::string roundTime(double seconds) const = 0;

    /// A fraction of one as a whole percentage: "42%".
    [[nodiscard]] virtual std::string percentage(double fraction) const = 0;

    /// A byte count as file managers show it, decimal units: "5.12 GB".
    [[nodiscard]] virtual std::string byteCount(std::int64_t bytes) const = 0;
};

} // namespace norvane
