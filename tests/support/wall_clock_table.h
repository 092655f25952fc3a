// What the C library's clock shows, for checking the engine against other code than its own.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/time/instant.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// Some weeks of one zone's wall clock, found by walking through them minute by minute.
class WallClockTable {
public:
    struct Day {
        Weekday weekday = Weekday::sunday;
        std::int64_t number = 0; // civil days since 1970-01-01
        bool exists = false;     // not left out by the zone
        // The first minute since begin() at which each wall-clock minute has come; the last one where it
        // never did.
        std::array<std::int64_t, 1440> firstMinute{};
    };

    WallClockTable(const char* zone, Instant begin, int dayCount) : zone_(zone), begin_(begin) {
        setenv("TZ", zone, 1);
        tzset();
        std::map<std::int64_t, Day> days;
        std::vector<std::int64_t> dayNumbers;
        std::int64_t expected = wallMinute(0);
        for (std::int64_t minute = 0; minute < std::int64_t{dayCount} * 1440; ++minute) {
            const std::int64_t shown = wallMinute(minute);
            for (; expected <= shown; ++expected)
                days[expected / 1440].firstMinute.at(static_cast<std::size_t>(expected % 1440)) = minute;
            dayNumbers.push_back(shown / 1440);
            days[shown / 1440].exists = true;
        }
        for (auto& [number, day] : days) {
            day.number = number;
            day.weekday = *Weekdays::fromCalendarWeekday((number + 4) % 7 + 1); // 1970-01-01 was a Thursday
            if (day.exists)
                days_.push_back(day);
        }
        std::map<std::int64_t, std::size_t> indices;
        for (std::size_t index = 0; index < days_.size(); ++index)
            indices[days_[index].number] = index;
        for (const std::int64_t number : dayNumbers)
            dayOfMinute_.push_back(indices[number]);
    }

    [[nodiscard]] const char* zone() const { return zone_; }
    [[nodiscard]] Instant begin() const { return begin_; }
    [[nodiscard]] const std::vector<Day>& days() const { return days_; }

    /// The index of the day of an instant.
    [[nodiscard]] std::size_t dayOf(Instant instant) const {
        return dayOfMinute_.at(static_cast<std::size_t>((instant - begin_) / std::chrono::minutes(1)));
    }

    /// The instant for which a time of a day stands.
    [[nodiscard]] Instant at(const Day& day, TimeOfDay time) const {
        return begin_ + std::chrono::minutes(
                            day.firstMinute.at(static_cast<std::size_t>(time.minutesSinceMidnight())));
    }

private:
    [[nodiscard]] std::int64_t wallMinute(std::int64_t minute) const {
        const std::time_t time = std::chrono::system_clock::to_time_t(begin_ + std::chrono::minutes(minute));
        std::tm shown{};
        localtime_r(&time, &shown);
        const auto year = std::chrono::year(shown.tm_year + 1900);
        const std::int64_t day =
            std::chrono::sys_days(year / 1 / 1).time_since_epoch().count() + shown.tm_yday;
        return (day * 24 + shown.tm_hour) * 60 + shown.tm_min;
    }

    const char* zone_;
    Instant begin_;
    std::vector<Day> days_;
    std::vector<std::size_t> dayOfMinute_;
};

} // namespace norvane
