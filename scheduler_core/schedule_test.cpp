#include "scheduler_core/schedule.h"

#include <gtest/gtest.h>

#include "scheduler_core/test_times.h"

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
    const char* zone;
    WeekdaySet days;
    TimeOfDay start;
    TimeOfDay end;
    const char* instant;
    const char* expected;
};

TEST(BlackoutWindow, EndsOfOccurrences) {
    const WeekdaySet monday{Weekday::monday};
    const WeekdaySet mondayAndTuesday{Weekday::monday, Weekday::tuesday};
    const WeekdaySet sunday{Weekday::sunday};
    const WeekdaySet saturday{Weekday::saturday};
    const WeekdaySet thursday{Weekday::thursday};
    const TimeOfDay ten{22, 0};
    const TimeOfDay six{6, 0};
    const OccurrenceCase cases[] = {
        // 2024-01-01 is a Monday.
        {"UTC", monday, ten, six, "2024-01-01 21:59:59.9", "none"},
        {"UTC", monday, ten, six, "2024-01-01 22:00:00", "2024-01-02 06:00:00"},
        {"UTC", monday, ten, six, "2024-01-02 05:59:59.9", "2024-01-02 06:00:00"},
        {"UTC", monday, ten, six, "2024-01-02 06:00:00", "none"},
        {"UTC", monday, ten, six, "2024-01-02 23:00:00", "none"},
        {"UTC", monday, ten, six, "2023-12-31 23:00:00", "none"},
        {"UTC", monday, {12, 0}, {12, 0}, "2024-01-01 12:00:00", "none"},
        {"UTC", {}, ten, six, "2024-01-01 23:00:00", "none"},
        {"UTC", mondayAndTuesday, {20, 0}, {4, 0}, "2024-01-02 02:00:00", "2024-01-02 04:00:00"},
        {"UTC", mondayAndTuesday, {20, 0}, {4, 0}, "2024-01-03 02:00:00", "2024-01-03 04:00:00"},
        // Over a clock change it lasts as long as ever: eight hours after Saturday 22:00 it is 07:00, or
        // 05:00.
        {"Europe/Berlin", saturday, ten, six, "2024-03-31 04:59:00", "2024-03-31 05:00:00"},
        {"Europe/Berlin", saturday, ten, six, "2024-10-27 04:00:00", "none"},
        // Its start falls into the gap.
        {"Europe/Berlin", sunday, {2, 30}, {3, 30}, "2024-03-31 00:59:59", "none"},
        {"Europe/Berlin", sunday, {2, 30}, {3, 30}, "2024-03-31 01:00:00", "2024-03-31 02:00:00"},
        // The previous day of Saturday is Thursday.
        {"Pacific/Apia", thursday, ten, six, "2011-12-30 12:00:00", "2011-12-30 16:00:00"},
        // Stored times out of range.
        {"UTC", monday, TimeOfDay::unclamped(25, 0), six, "2024-01-01 23:00:00", "none"},
        {"UTC", monday, ten, TimeOfDay::unclamped(INT64_MAX, 0), "2024-01-01 23:00:00", "none"},
        {"UTC", monday, ten, TimeOfDay::unclamped(48, 0), "2024-01-01 23:00:00", "2024-01-03 00:00:00"},
    };
    for (const auto& [name, days, start, end, instant, expected] : cases) {
        const BlackoutWindow window{.days = days, .start = start, .end = end};
        EXPECT_EQ(utcText(window.endOfOccurrenceContaining(utc(instant), zone(name))), expected)
            << name << ' ' << instant << ' ' << start.hour << ':' << start.minute;
    }
}

} // namespace
} // namespace norvane
