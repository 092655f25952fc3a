// The digits of a time of day as a user reads and changes them, on a clock of 24 hours or of twice 12.
//
// A time is in minutes since midnight, 0 to 1439. What was typed and is no hour or minute changes nothing.
#pragma once

#include <string>
#include <string_view>

namespace norvane {

/// "00" to "23", or "1" to "12".
[[nodiscard]] std::string hourDigits(int time, bool hours24);
/// "00" to "59".
[[nodiscard]] std::string minuteDigits(int time);

/// An hour from 1 to 12 is, on a clock of twice 12, one of the half of the day that the time is in; 0 and 13
/// to 23 mean the same on both.
[[nodiscard]] int withTypedHour(int time, std::string_view digits, bool hours24);
[[nodiscard]] int withTypedMinute(int time, std::string_view digits);

/// From one end it goes on at the other; the other digits stay.
[[nodiscard]] int withHourStepped(int time, int by);
[[nodiscard]] int withMinuteStepped(int time, int by);

/// AM for PM, or the other way round.
[[nodiscard]] int inOtherHalf(int time);

} // namespace norvane
