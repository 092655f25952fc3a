#include "scheduler_core/calendar.h"

#include <chrono>
#include <cstdlib>
#include <exception>

#include <date/date.h>
#include <date/tz.h>

namespace norvane {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr seconds wholeDay = date::days(1);

// Whole seconds and the rest apart: in seconds nothing that starts from an Instant can overflow.
struct SplitInstant {
    date::sys_seconds whole;
    microseconds rest; // 0 up to a second
};

SplitInstant split(Instant instant) {
    const std::int64_t count = instant.time_since_epoch().count();
    const std::int64_t rest =
        ((count % microsecondsPerSecond) + microsecondsPerSecond) % microsecondsPerSecond;
    const std::int64_t whole =
        (count / microsecondsPerSecond) - ((count % microsecondsPerSecond) < 0 ? 1 : 0);
    return {date::sys_seconds(seconds(whole)), microseconds(rest)};
}

std::optional<Instant> join(date::sys_seconds whole, microseconds rest) {
    constexpr seconds first = std::chrono::ceil<seconds>(Instant::min().time_since_epoch());
    constexpr seconds last = std::chrono::floor<seconds>(Instant::max().time_since_epoch()) - seconds(1);
    if (whole.time_since_epoch() < first || whole.time_since_epoch() > last)
        return std::nullopt;
    return Instant(whole) + rest;
}

date::local_seconds localTime(const date::time_zone* zone, date::sys_seconds time) {
    const seconds offset = zone ? zone->get_info(time).offset : seconds(0);
    return date::local_seconds(time.time_since_epoch() + offset);
}

date::local_info localInfo(const date::time_zone* zone, date::local_seconds wallTime) {
    return zone ? zone->get_info(wallTime) : date::local_info{};
}

// The one place that decides what skipped and repeated wall times mean. `rest` is the fraction of a second.
std::optional<Instant> resolve(const date::local_info& info, date::local_seconds wallTime,
                               microseconds rest) {
    if (info.result == date::local_info::nonexistent)
        return join(info.first.end, microseconds(0));
    return join(date::sys_seconds(wallTime.time_since_epoch() - info.first.offset), rest);
}

std::optional<Instant> resolve(const date::time_zone* zone, date::local_seconds wallTime) {
    return resolve(localInfo(zone, wallTime), wallTime, microseconds(0));
}

date::local_days localDay(const date::time_zone* zone, Instant instant) {
    return date::floor<date::days>(localTime(zone, split(instant).whole));
}

const date::time_zone* locate(std::string_view name) {
    try {
        const date::time_zone* zone = date::locate_zone(name);
        static_cast<void>(zone->get_info(date::sys_seconds())); // the file is read at the first question
        return zone;
    } catch (const std::exception&) {
        return nullptr;
    }
}

// tzset(3): a colon may stand before the name, and the name may be a file's path.
const date::time_zone* zoneOfEnvironment() {
    const char* value = std::getenv("TZ");
    if (!value)
        return nullptr;
    std::string_view name = value;
    if (name.starts_with(':'))
        name.remove_prefix(1);
    constexpr std::string_view folder = "/zoneinfo/";
    if (const auto position = name.find(folder); name.starts_with('/') && position != std::string_view::npos)
        name.remove_prefix(position + folder.size());
    return locate(name);
}

const date::time_zone* zoneOfSystem() {
    try {
        return locate(date::current_zone()->name());
    } catch (const std::exception&) {
        return nullptr;
    }
}

} // namespace

Calendar Calendar::current() {
    if (const date::time_zone* zone = zoneOfEnvironment())
        return Calendar(zone);
    return Calendar(zoneOfSystem());
}

std::optional<Calendar> Calendar::inZone(std::string_view name) {
    if (const date::time_zone* zone = locate(name))
        return Calendar(zone);
    return std::nullopt;
}

Instant Calendar::startOfDay(Instant instant) const {
    return resolve(zone_, localDay(zone_, instant)).value_or(instant);
}

std::optional<Instant> Calendar::addingDays(std::int64_t days, Instant instant) const {
    constexpr std::int64_t daysInRange = 250'000'000; // more than there are between the ends of Instant
    if (days < -daysInRange || days > daysInRange)
        return std::nullopt;
    if (days == 0)
        return instant; // also where the wall-clock time occurs twice
    const auto [whole, rest] = split(instant);
    const date::local_seconds target = localTime(zone_, whole) + days * wholeDay;
    const date::local_info info = localInfo(zone_, target);
    if (info.result == date::local_info::nonexistent && days < 0) {
        const seconds gap = info.second.offset - info.first.offset;
        if (gap >= wholeDay)
            return resolve(localInfo(zone_, target - gap), target - gap, rest);
    }
    return resolve(info, target, rest);
}

std::optional<Instant> Calendar::addingMinutes(std::int64_t minutes, Instant instant) const {
    constexpr std::int64_t minutesInRange =
        400'000'000'000; // more than there are between the ends of Instant
    if (minutes < -minutesInRange || minutes > minutesInRange)
        return std::nullopt;
    const auto [whole, rest] = split(instant);
    return join(whole + std::chrono::minutes(minutes), rest);
}

int Calendar::weekday(Instant instant) const {
    return static_cast<int>(date::weekday(localDay(zone_, instant)).c_encoding()) + 1;
}

std::optional<Instant> Calendar::settingTime(std::int64_t hour, std::int64_t minute, Instant instant) const {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59)
        return std::nullopt;
    return resolve(zone_, localDay(zone_, instant) + std::chrono::hours(hour) + std::chrono::minutes(minute));
}

std::optional<Instant> Calendar::instantAt(const WallTime& wallTime) const {
    const auto inside = [](int value, int least, int most) { return value >= least && value <= most; };
    if (!inside(wallTime.year, -9999, 9999) || !inside(wallTime.month, 1, 12) ||
        !inside(wallTime.day, 1, 31) || !inside(wallTime.hour, 0, 23) || !inside(wallTime.minute, 0, 59) ||
        !inside(wallTime.second, 0, 59))
        return std::nullopt;
    const auto date = date::year(wallTime.year) / wallTime.month / wallTime.day;
    if (!date.ok())
        return std::nullopt;
    return resolve(zone_, date::local_days(date) + std::chrono::hours(wallTime.hour) +
                              std::chrono::minutes(wallTime.minute) + seconds(wallTime.second));
}

} // namespace norvane
