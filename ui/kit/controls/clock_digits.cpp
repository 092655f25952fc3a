#include "ui/kit/controls/clock_digits.h"

#include <charconv>
#include <optional>

namespace norvane {

namespace {

constexpr int hoursOfDay = 24;
constexpr int hoursOfHalf = 12;
constexpr int minutesOfHour = 60;

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// None: it is not a number from 0 to below the limit.
std::optional<int> numberBelow(int limit, std::string_view digits) {
    int number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end && number >= 0 && number < limit ? std::optional(number)
                                                                                : std::nullopt;
}

int timeAt(int hour, int minute) { return hour * minutesOfHour + minute; }

/// Within 0 to below the size, however far it went.
int wrapped(int number, int size) { return (number % size + size) % size; }

} // namespace

std::string hourDigits(int time, bool hours24) {
    const int hour = time / minutesOfHour;
    return hours24 ? twoDigits(hour) : std::to_string((hour + hoursOfHalf - 1) % hoursOfHalf + 1);
}

std::string minuteDigits(int time) { return twoDigits(time % minutesOfHour); }

int withTypedHour(int time, std::string_view digits, bool hours24) {
    const std::optional<int> typed = numberBelow(hoursOfDay, digits);
    if (!typed)
        return time;
    const bool ofHalf = !hours24 && *typed >= 1 && *typed <= hoursOfHalf;
    const int half = time / timeAt(hoursOfHalf, 0);
    return timeAt(ofHalf ? *typed % hoursOfHalf + half * hoursOfHalf : *typed, time % minutesOfHour);
}

int withTypedMinute(int time, std::string_view digits) {
    const int minute = time % minutesOfHour;
    return time - minute + numberBelow(minutesOfHour, digits).value_or(minute);
}

int withHourStepped(int time, int by) {
    return timeAt(wrapped(time / minutesOfHour + by, hoursOfDay), time % minutesOfHour);
}

int withMinuteStepped(int time, int by) {
    return timeAt(time / minutesOfHour, wrapped(time % minutesOfHour + by, minutesOfHour));
}

int inOtherHalf(int time) { return wrapped(time + timeAt(hoursOfHalf, 0), timeAt(hoursOfDay, 0)); }

} // namespace norvane
