#include "scheduler_core/calendar.h"

#include <cctz/civil_time.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace norvane {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;
using WholeSeconds = cctz::time_point<cctz::seconds>;

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr seconds wholeDay = std::chrono::hours(24);

// Whole seconds and the rest apart: in seconds nothing that starts from an Instant can overflow.
struct SplitInstant {
    WholeSeconds whole;
    microseconds rest; // 0 up to a second
};

SplitInstant split(Instant instant) {
    const std::int64_t count = instant.time_since_epoch().count();
    const std::int64_t rest =
        ((count % microsecondsPerSecond) + microsecondsPerSecond) % microsecondsPerSecond;
    const std::int64_t whole =
        (count / microsecondsPerSecond) - ((count % microsecondsPerSecond) < 0 ? 1 : 0);
    return {WholeSeconds(seconds(whole)), microseconds(rest)};
}

std::optional<Instant> join(WholeSeconds whole, microseconds rest) {
    constexpr seconds first = std::chrono::ceil<seconds>(Instant::min().time_since_epoch());
    constexpr seconds last = std::chrono::floor<seconds>(Instant::max().time_since_epoch()) - seconds(1);
    if (whole.time_since_epoch() < first || whole.time_since_epoch() > last)
        return std::nullopt;
    return Instant(whole) + rest;
}

// The one place that decides what skipped and repeated wall times mean. `rest` is the fraction of a second.
std::optional<Instant> resolve(const cctz::time_zone::civil_lookup& found, microseconds rest) {
    if (found.kind == cctz::time_zone::civil_lookup::SKIPPED)
        return join(found.trans, microseconds(0));
    return join(found.pre, rest);
}

std::optional<Instant> resolve(const cctz::time_zone& zone, const cctz::civil_second& wallTime) {
    return resolve(zone.lookup(wallTime), microseconds(0));
}

cctz::civil_day localDay(const cctz::time_zone& zone, Instant instant) {
    return cctz::civil_day(cctz::convert(split(instant).whole, zone));
}

std::optional<cctz::time_zone> locate(const std::string& name) {
    cctz::time_zone zone;
    return cctz::load_time_zone(name, &zone) ? std::optional(zone) : std::nullopt;
}

/// The name of a zone that a path such as /usr/share/zoneinfo/Europe/Berlin stands for; else the path.
std::string zoneName(const std::string& path) {
    constexpr std::string_view folder = "/zoneinfo/";
    const auto position = path.starts_with('/') ? path.find(folder) : std::string::npos;
    return position == std::string::npos ? path : path.substr(position + folder.size());
}

// tzset(3): a colon may stand before the name, and the name may be a file's path.
std::optional<cctz::time_zone> zoneOfEnvironment() {
    const char* value = std::getenv("TZ");
    if (!value)
        return std::nullopt;
    return locate(zoneName(*value == ':' ? value + 1 : value));
}

// localtime(5). Read anew each time, because zones that were loaded once are kept by their names.
std::optional<cctz::time_zone> zoneOfSystem() {
    const std::string file = "/etc/localtime";
    std::error_code error;
    const std::string path = std::filesystem::canonical(file, error).string();
    std::string name = zoneName(path);
    if (name == file) // a copy, which does not tell its name
        std::getline(std::ifstream("/etc/timezone"), name);
    const auto zone = error ? std::nullopt : locate(name);
    return zone || error ? zone : locate(path);
}

} // namespace

Calendar Calendar::current() {
    if (const auto zone = zoneOfEnvironment())
        return Calendar(*zone);
    return Calendar(zoneOfSystem().value_or(cctz::utc_time_zone()));
}

std::optional<Calendar> Calendar::inZone(std::string_view name) {
    if (const auto zone = locate(std::string(name)))
        return Calendar(*zone);
    return std::nullopt;
}

Instant Calendar::startOfDay(Instant instant) const {
    return resolve(zone_, cctz::civil_second(localDay(zone_, instant))).value_or(instant);
}

std::optional<Instant> Calendar::addingDays(std::int64_t days, Instant instant) const {
    constexpr std::int64_t daysInRange = 250'000'000; // more than there are between the ends of Instant
    if (days < -daysInRange || days > daysInRange)
        return std::nullopt;
    if (days == 0)
        return instant; // also where the wall-clock time occurs twice
    const auto [whole, rest] = split(instant);
    const cctz::civil_second target = cctz::convert(whole, zone_) + days * wholeDay.count();
    const cctz::time_zone::civil_lookup found = zone_.lookup(target);
    if (found.kind == cctz::time_zone::civil_lookup::SKIPPED && days < 0) {
        const seconds gap = found.pre - found.post;
        if (gap >= wholeDay)
            return resolve(zone_.lookup(target - gap.count()), rest);
    }
    return resolve(found, rest);
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
    constexpr int daysInWeek = 7;
    const int sinceMonday = static_cast<int>(cctz::get_weekday(localDay(zone_, instant)));
    return (sinceMonday + 1) % daysInWeek + 1;
}

std::optional<Instant> Calendar::settingTime(std::int64_t hour, std::int64_t minute, Instant instant) const {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59)
        return std::nullopt;
    const cctz::civil_day day = localDay(zone_, instant);
    return resolve(zone_, cctz::civil_second(day.year(), day.month(), day.day(), hour, minute));
}

std::optional<Instant> Calendar::instantAt(const WallTime& wallTime) const {
    constexpr int lastYear = 9999;
    const cctz::civil_second second(wallTime.year, wallTime.month, wallTime.day, wallTime.hour,
                                    wallTime.minute, wallTime.second);
    const bool exists = second.month() == wallTime.month && second.day() == wallTime.day &&
                        second.hour() == wallTime.hour && second.minute() == wallTime.minute &&
                        second.second() == wallTime.second; // what does not exist has become another time
    if (!exists || wallTime.year < -lastYear || wallTime.year > lastYear)
        return std::nullopt;
    return resolve(zone_, second);
}

} // namespace norvane
