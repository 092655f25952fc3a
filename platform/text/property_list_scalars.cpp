#include "platform/text/property_list_scalars.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <system_error>

namespace norvane {

namespace {

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr std::int64_t secondsPerDay = 86'400;

// The calendar of std::chrono ends at year 32767, an Instant at 294247. The Gregorian calendar repeats itself
// every 400 years, so a date is computed in the years 2000 to 2399 and moved by whole cycles.
constexpr std::int64_t yearsPerCycle = 400;
constexpr std::int64_t daysPerCycle = 146'097;
constexpr std::int64_t firstYear = 2000;
constexpr std::int64_t firstDay = 10'957; // 2000-01-01, counted from 1970-01-01

constexpr std::int64_t floorDivide(std::int64_t dividend, std::int64_t divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

template <class Number>
bool parseWhole(std::string_view text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

/// Drops a plus sign, which from_chars does not know. A second sign stays and fails there.
std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

/// Takes digits from the front. Digits only: from_chars would take a sign as well.
std::optional<std::int64_t> takeDigits(std::string_view& text, std::size_t least, std::size_t most) {
    std::size_t count = 0;
    std::int64_t number = 0;
    while (count < most && count < text.size() && text[count] >= '0' && text[count] <= '9')
        number = number * 10 + (text[count++] - '0');
    if (count < least)
        return std::nullopt;
    text.remove_prefix(count);
    return number;
}

bool takeCharacter(std::string_view& text, char character) {
    if (text.empty() || text.front() != character)
        return false;
    text.remove_prefix(1);
    return true;
}

std::optional<std::int64_t> takeDay(std::string_view& text) {
    const bool negative = takeCharacter(text, '-');
    const auto year = takeDigits(text, 4, 6);
    if (!year || !takeCharacter(text, '-'))
        return std::nullopt;
    const auto month = takeDigits(text, 2, 2);
    if (!month || !takeCharacter(text, '-'))
        return std::nullopt;
    const auto day = takeDigits(text, 2, 2);
    if (!day)
        return std::nullopt;
    const std::int64_t fullYear = negative ? -*year : *year;
    const std::int64_t cycle = floorDivide(fullYear - firstYear, yearsPerCycle);
    const std::chrono::year_month_day date{
        std::chrono::year(static_cast<int>(fullYear - cycle * yearsPerCycle)),
        std::chrono::month(static_cast<unsigned>(*month)), std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok())
        return std::nullopt;
    return std::chrono::sys_days(date).time_since_epoch().count() + cycle * daysPerCycle;
}

std::optional<std::int64_t> takeSecondOfDay(std::string_view& text) {
    const auto hour = takeDigits(text, 2, 2);
    if (!hour || *hour > 23 || !takeCharacter(text, ':'))
        return std::nullopt;
    const auto minute = takeDigits(text, 2, 2);
    if (!minute || *minute > 59 || !takeCharacter(text, ':'))
        return std::nullopt;
    const auto second = takeDigits(text, 2, 2);
    if (!second || *second > 59)
        return std::nullopt;
    return (*hour * 60 + *minute) * 60 + *second;
}

std::optional<std::int64_t> takeMicrosecond(std::string_view& text) {
    if (!takeCharacter(text, '.'))
        return 0;
    const std::size_t before = text.size();
    auto fraction = takeDigits(text, 1, 6);
    if (fraction) {
        for (std::size_t digits = before - text.size(); digits < 6; ++digits)
            *fraction *= 10;
    }
    return fraction;
}

} // namespace

std::optional<PropertyList> parseIntegerText(std::string_view text) {
    text = withoutPlus(text);
    if (std::int64_t number = 0; parseWhole(text, number))
        return PropertyList{number};
    if (std::uint64_t number = 0; parseWhole(text, number))
        return PropertyList{number};
    return std::nullopt;
}

std::optional<double> parseRealText(std::string_view text) {
    double number = 0;
    if (!parseWhole(withoutPlus(text), number))
        return std::nullopt;
    return number;
}

std::string realText(double number) {
    // Without an exponent as long as that is no stretch of zeros.
    const double magnitude = std::abs(number);
    const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    std::array<char, 64> buffer{};
    char* const end = buffer.data() + buffer.size();
    const auto result = std::to_chars(buffer.data(), end, number,
                                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    return {buffer.data(), result.ptr};
}

DateText dateText(Instant instant) {
    const std::int64_t microseconds = instant.time_since_epoch().count();
    const std::int64_t seconds = floorDivide(microseconds, microsecondsPerSecond);
    const std::int64_t days = floorDivide(seconds, secondsPerDay);
    const std::int64_t cycle = floorDivide(days - firstDay, daysPerCycle);
    const std::chrono::year_month_day date{
        std::chrono::sys_days(std::chrono::days(days - cycle * daysPerCycle))};
    const std::int64_t year = int{date.year()} + cycle * yearsPerCycle;
    const int secondOfDay = static_cast<int>(seconds - days * secondsPerDay);
    // The remainder of the division, without multiplying: seconds × 10^6 can fall below the range.
    const int microsecond = static_cast<int>((microseconds % microsecondsPerSecond + microsecondsPerSecond) %
                                             microsecondsPerSecond);

    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%s%04lld-%02u-%02u", year < 0 ? "-" : "",
                  static_cast<long long>(std::abs(year)), unsigned{date.month()}, unsigned{date.day()});
    DateText text{buffer.data(), "", ""};
    std::snprintf(buffer.data(), buffer.size(), "%02d:%02d:%02d", secondOfDay / 3600, secondOfDay / 60 % 60,
                  secondOfDay % 60);
    text.time = buffer.data();
    if (microsecond != 0) {
        std::snprintf(buffer.data(), buffer.size(), ".%06d", microsecond);
        text.fraction = buffer.data();
        text.fraction.resize(text.fraction.find_last_not_of('0') + 1);
    }
    return text;
}

std::optional<Instant> parseDateText(std::string_view text) {
    const auto day = takeDay(text);
    if (!day || !takeCharacter(text, 'T'))
        return std::nullopt;
    const auto secondOfDay = takeSecondOfDay(text);
    if (!secondOfDay)
        return std::nullopt;
    const auto microsecond = takeMicrosecond(text);
    if (!microsecond || text != "Z")
        return std::nullopt;

    // Years of six digits reach past the range of an Instant. Before 1970 count back from the next second, or
    // the earliest instants would overflow on the way.
    const std::int64_t seconds = *day * secondsPerDay + *secondOfDay;
    const std::int64_t carry = seconds < 0 ? 1 : 0;
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(seconds + carry, microsecondsPerSecond, &microseconds) ||
        __builtin_add_overflow(microseconds, *microsecond - carry * microsecondsPerSecond, &microseconds))
        return std::nullopt;
    return Instant(std::chrono::microseconds(microseconds));
}

} // namespace norvane
