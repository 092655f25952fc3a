// The calendar of one time zone: what wall-clock times mean as instants.
//
// Gregorian days and weekday numbers, the zone rules of the system's time-zone files (tzfile(5)); after the
// last listed clock change by the rule at the end of the file.
#pragma once

#include <cctz/time_zone.h>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/time/instant.h"

namespace norvane {

struct WallTime {
    int year = 1970;
    int month = 1; ///< 1 to 12.
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0; ///< 0 to 59.
};

/// A small value, never changed once built: copy it, use it from any thread. Nothing throws; what cannot be
/// formed is none. A wall-clock time that a clock change skips stands for the first instant after the gap,
/// one that occurs twice for the earlier of the two.
class Calendar {
public:
    /// In the user's zone as it is now: $TZ when it names a zone, else the system's; UTC when neither is
    /// known.
    [[nodiscard]] static Calendar current();

    /// In the zone of a name such as "Europe/Berlin"; none when the system's files do not have it.
    [[nodiscard]] static std::optional<Calendar> inZone(std::string_view name);

    /// The first instant of the calendar day that contains `instant`; at the very start of the range that
    /// instant itself.
    [[nodiscard]] Instant startOfDay(Instant instant) const;

    /// `instant` moved by whole calendar days, at the same wall-clock time where possible. A day that the
    /// zone left out altogether is stepped over in the direction of the move.
    [[nodiscard]] std::optional<Instant> addingDays(std::int64_t days, Instant instant) const;

    /// `instant` moved by minutes of elapsed time.
    [[nodiscard]] std::optional<Instant> addingMinutes(std::int64_t minutes, Instant instant) const;

    /// 1 (Sunday) to 7 (Saturday).
    [[nodiscard]] int weekday(Instant instant) const;

    /// The instant at hour:minute:00 of the calendar day that contains `instant`; none outside 0…23 and 0…59.
    [[nodiscard]] std::optional<Instant> settingTime(std::int64_t hour, std::int64_t minute,
                                                     Instant instant) const;

    /// The instant that the wall clock shows as this date and time; none when there is no such date or time.
    [[nodiscard]] std::optional<Instant> instantAt(const WallTime& wallTime) const;

private:
    explicit Calendar(cctz::time_zone zone) : zone_(zone) {}

    cctz::time_zone zone_; // a handle; what it stands for lives as long as the process
};

} // namespace norvane
