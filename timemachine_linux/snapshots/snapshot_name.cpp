#include "timemachine_linux/snapshots/snapshot_name.h"

#include <array>
#include <ctime>

#include "platform/text/digit_pattern.h"

namespace norvane {

std::string snapshotName(Instant instant) {
    const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
    std::tm local{};
    ::localtime_r(&seconds, &local);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d-%H%M%S", &local);
    return {text.data(), length};
}

std::optional<Instant> parseSnapshotName(std::string_view name) {
    if (!fitsPattern(name, "dddd-dd-dd-dddddd"))
        return std::nullopt;
    std::tm local{};
    local.tm_year = digitsAt(name, 0, 4) - 1900;
    local.tm_mon = digitsAt(name, 5, 2) - 1;
    local.tm_mday = digitsAt(name, 8, 2);
    local.tm_hour = digitsAt(name, 11, 2);
    local.tm_min = digitsAt(name, 13, 2);
    local.tm_sec = digitsAt(name, 15, 2);
    local.tm_isdst = -1;
    const std::tm asked = local;
    const std::time_t seconds = ::mktime(&local);
    // mktime carries a 31st of June over; an hour that the clocks skipped may come from another time zone.
    if (asked.tm_mon < 0 || asked.tm_mon > 11 || asked.tm_mday != local.tm_mday || asked.tm_hour > 23 ||
        asked.tm_min > 59 || asked.tm_sec > 59)
        return std::nullopt;
    return Instant(std::chrono::seconds(seconds));
}

} // namespace norvane
