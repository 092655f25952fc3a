#include "scheduler_core/schedule.h"

#include <gtest/gtest.h>

#include "tests/support/test_times.h"

namespace norvane {

namespace {

TEST(TimeOfDay, ClampsComparesAndKeepsWhatIsStored) {
    EXPECT_EQ(TimeOfDay(-3, 75), TimeOfDay(0, 59));
    EXPECT_EQ(TimeOfDay(24, 0), TimeOfDay(23, 0));
    EXPECT_EQ(TimeOfDay::unclamped(25, 0).hour, 25);
    EXPECT_LT(TimeOfDay(9, 5), TimeOfDay(10, 0));
    EXPECT_GT(TimeOfDay(23, 59), TimeOfDay(0, 0));
    const TimeOfDay oneOClock(1, 0);
    const auto sixtyMinutes = TimeOfDay::unclamped(0, 60);
    EXPECT_FALSE(oneOClock < sixtyMinutes || oneOClock > sixtyMinutes);
    EXPECT_TRUE(oneOClock <= sixtyMinutes && oneOClock != sixtyMinutes);
    EXPECT_GT(TimeOfDay::unclamped(INT64_MAX, INT64_MAX), TimeOfDay::unclamped(INT64_MIN, INT64_MIN));
}

struct OccurrenceCase {
    WeekdaySet days;
    TimeOfDay start;
    TimeOfDay end;
    const char* instant;
    const char* expected;
};

TEST(BlackoutWindow, EndsOfOccurrences) {
    const WeekdaySet monday{Weekday::monday};
    const WeekdaySet mondayAndTuesday{Weekday::monday, Weekday::tuesday};
    const TimeOfDay ten{22, 0};
    const TimeOfDay six{6, 0};
    const OccurrenceCase cases[] = {
        // 2024-01-01 is a Monday.
        {monday, ten, six, "2024-01-01 21:59:59.9", "none"},
        {monday, ten, six, "2024-01-01 22:00:00", "2024-01-02 06:00:00"},
        {monday, ten, six, "2024-01-02 05:59:59.9", "2024-01-02 06:00:00"},
        {monday, ten, six, "2024-01-02 06:00:00", "none"},
        {monday, {12, 0}, {12, 0}, "2024-01-01 12:00:00", "none"},
        // Stored times out of range.
        {monday, TimeOfDay::unclamped(25, 0), six, "2024-01-01 23:00:00", "none"},
        {monday, ten, TimeOfDay::unclamped(INT64_MAX, 0), "2024-01-01 23:00:00", "none"},
        {mondayAndTuesday, ten, TimeOfDay::unclamped(48, 0), "2024-01-02 23:00:00",
         "2024-01-04 00:00:00"}, // of two at a time the later
    };
    for (const auto& [days, start, end, instant, expected] : cases) {
        const BlackoutWindow window{.days = days, .start = start, .end = end};
        EXPECT_EQ(utcText(window.endOfOccurrenceContaining(utc(instant), zone("UTC"))), expected)
            << instant << ' ' << start.hour << ':' << start.minute;
    }
}

} // namespace

} // namespace norvane
