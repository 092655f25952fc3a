#include "ui/kit/controls/clock_digits.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

constexpr int at(int hour, int minute = 0) { return hour * 60 + minute; }

TEST(ClockDigits, ReadOnBothClocks) {
    struct Case {
        int time;
        const char* of24;
        const char* of12;
        const char* minutes;
    };
    for (const Case& c : {Case{at(0), "00", "12", "00"},
                          {at(1, 5), "01", "1", "05"},
                          {at(12, 10), "12", "12", "10"},
                          {at(13), "13", "1", "00"},
                          {at(23, 59), "23", "11", "59"}}) {
        EXPECT_EQ(hourDigits(c.time, true), c.of24);
        EXPECT_EQ(hourDigits(c.time, false), c.of12);
        EXPECT_EQ(minuteDigits(c.time), c.minutes);
    }
}

TEST(ClockDigits, AreTyped) {
    struct Case {
        const char* digits;
        int of24, of12InTheMorning, of12InTheEvening; ///< Of 8:30 and 20:30.
    };
    constexpr int morning = at(8, 30), evening = at(20, 30);
    for (const Case& c : {Case{"9", at(9, 30), at(9, 30), at(21, 30)},
                          {"09", at(9, 30), at(9, 30), at(21, 30)},
                          {"12", at(12, 30), at(0, 30), at(12, 30)},
                          {"00", at(0, 30), at(0, 30), at(0, 30)},
                          {"13", at(13, 30), at(13, 30), at(13, 30)},
                          {"23", at(23, 30), at(23, 30), at(23, 30)},
                          {"24", morning, morning, evening},
                          {"", morning, morning, evening},
                          {"-1", morning, morning, evening},
                          {"1x", morning, morning, evening}}) {
        EXPECT_EQ(withTypedHour(morning, c.digits, true), c.of24) << c.digits;
        EXPECT_EQ(withTypedHour(morning, c.digits, false), c.of12InTheMorning) << c.digits;
        EXPECT_EQ(withTypedHour(evening, c.digits, false), c.of12InTheEvening) << c.digits;
    }
    for (const auto& [digits, minute] : {std::pair{"0", 0}, {"59", 59}, {"60", 30}, {"", 30}})
        EXPECT_EQ(withTypedMinute(evening, digits), at(20, minute)) << digits;
}

TEST(ClockDigits, AreStepped) {
    for (const auto& [before, after] : {std::pair{at(11, 59), at(12, 59)}, {at(23, 7), at(0, 7)}}) {
        EXPECT_EQ(withHourStepped(before, 1), after);
        EXPECT_EQ(withHourStepped(after, -1), before);
    }
    EXPECT_EQ(withMinuteStepped(at(23, 59), 1), at(23));
    EXPECT_EQ(withMinuteStepped(at(23), -1), at(23, 59));
    for (const auto& [before, after] : {std::pair{at(0, 5), at(12, 5)}, {at(21), at(9)}})
        EXPECT_EQ(inOtherHalf(before), after);
}

} // namespace

} // namespace norvane
