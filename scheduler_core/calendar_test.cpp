#include "scheduler_core/calendar.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/support/test_times.h"

namespace norvane {

namespace {

struct WallTimeCase {
    const char* zone;
    const char* within; // some instant of the day, in UTC
    int hour;
    int minute;
    const char* expected; // in UTC
};

TEST(Calendar, SetsWallTimes) {
    const WallTimeCase cases[] = {
        {"UTC", "2024-01-02 10:00:00", 23, 59, "2024-01-02 23:59:00"},
        {"Asia/Kathmandu", "2024-01-02 20:00:00", 0, 0, "2024-01-02 18:15:00"},
        // Skipped: 02:00–03:00, an hour from midnight, half an hour, and the last hour of a day.
        {"Europe/Berlin", "2024-03-31 10:00:00", 2, 30, "2024-03-31 01:00:00"},
        {"America/Sao_Paulo", "2017-10-15 12:00:00", 0, 30, "2017-10-15 03:00:00"},
        {"Australia/Lord_Howe", "2024-10-06 00:00:00", 2, 15, "2024-10-05 15:30:00"},
        {"America/Nuuk", "2024-03-30 12:00:00", 23, 30, "2024-03-31 01:00:00"},
        // Repeated: the earlier.
        {"Europe/Berlin", "2024-10-27 10:00:00", 2, 30, "2024-10-27 00:30:00"},
        {"America/Toronto", "2024-11-03 10:00:00", 1, 30, "2024-11-03 05:30:00"},
        {"America/Sao_Paulo", "2018-02-17 12:00:00", 23, 30, "2018-02-18 01:30:00"},
        {"America/St_Johns", "2010-11-07 12:00:00", 0, 0, "2010-11-07 02:30:00"},
        // By the rule at the end of the file, behind its last listed change.
        {"Europe/Berlin", "2050-07-01 10:00:00", 12, 0, "2050-07-01 10:00:00"},
        {"America/Nuuk", "2050-07-01 10:00:00", 12, 0, "2050-07-01 13:00:00"},
        {"Australia/Lord_Howe", "2444-01-01 10:00:00", 12, 0, "2444-01-01 01:00:00"},
        // Out of range.
        {"UTC", "2024-01-02 10:00:00", 24, 0, "none"},
        {"UTC", "2024-01-02 10:00:00", 12, 60, "none"},
        {"UTC", "2024-01-02 10:00:00", -1, 0, "none"},
        {"UTC", "2024-01-02 10:00:00", 0, -1, "none"},
    };
    for (const auto& [name, within, hour, minute, expected] : cases)
        EXPECT_EQ(utcText(zone(name).settingTime(hour, minute, utc(within))), expected)
            << name << ' ' << within << ' ' << hour << ':' << minute;
}

struct DayCase {
    const char* zone;
    const char* instant;
    const char* dayStart;
    int weekday;
};

TEST(Calendar, KnowsTheDayOfAnInstant) {
    const DayCase cases[] = {
        {"UTC", "1969-12-31 23:59:59.5", "1969-12-31 00:00:00", 4},
        {"Europe/Berlin", "2024-06-01 22:30:00", "2024-06-01 22:00:00", 1},
        {"America/Sao_Paulo", "2017-10-15 12:00:00", "2017-10-15 03:00:00", 1}, // begins at 01:00
        {"America/Havana", "2024-11-03 05:30:00", "2024-11-03 04:00:00", 1},    // the second 00:30
        {"America/St_Johns", "2010-11-07 02:45:00", "2010-11-06 02:30:00", 7}, // back on Saturday for an hour
        {"Pacific/Apia", "2011-12-30 11:00:00", "2011-12-30 10:00:00", 7},     // Saturday follows Thursday
    };
    for (const auto& [name, instant, dayStart, weekday] : cases) {
        EXPECT_EQ(utcText(zone(name).startOfDay(utc(instant))), dayStart) << name << ' ' << instant;
        EXPECT_EQ(zone(name).weekday(utc(instant)), weekday) << name << ' ' << instant;
    }
}

struct MoveCase {
    const char* zone;
    const char* from;
    int days;
    const char* expected;
};

TEST(Calendar, MovesByDays) {
    const MoveCase cases[] = {
        {"Europe/Berlin", "2024-03-30 11:00:00", 1, "2024-03-31 10:00:00"}, // 23 hours later
        {"Europe/Berlin", "2024-03-30 01:30:00", 1, "2024-03-31 01:00:00"}, // into the gap
        {"Europe/Berlin", "2024-10-27 01:30:00", 0, "2024-10-27 01:30:00"}, // the second 02:30 stays
        {"Europe/Berlin", "2024-02-29 11:00:00", 366, "2025-03-01 11:00:00"},
        {"Pacific/Apia", "2011-12-29 22:00:00", 1, "2011-12-30 10:00:00"},  // the day after does not exist
        {"Pacific/Apia", "2011-12-30 12:00:00", -1, "2011-12-29 12:00:00"}, // nor does the day before
        {"Pacific/Apia", "2011-12-31 12:00:00", -3, "2011-12-29 12:00:00"},
    };
    for (const auto& [name, from, days, expected] : cases)
        EXPECT_EQ(utcText(zone(name).addingDays(days, utc(from))), expected)
            << name << ' ' << from << ' ' << days;
    const Instant precise = utc("2024-01-02 10:00:00.123456");
    EXPECT_EQ(zone("UTC").addingDays(1, precise), precise + std::chrono::hours(24));
    EXPECT_EQ(zone("UTC").addingMinutes(-90, precise), precise - std::chrono::minutes(90));
}

TEST(Calendar, ExtremeInstantsOverflowNowhere) {
    for (const char* name : {"UTC", "Pacific/Apia", "America/Nuuk"}) {
        const Calendar calendar = zone(name);
        for (const Instant extreme :
             {distantPast, distantPast + std::chrono::microseconds(1), distantFuture}) {
            const int weekday = calendar.weekday(extreme);
            EXPECT_TRUE(weekday >= 1 && weekday <= 7);
            EXPECT_LE(calendar.startOfDay(extreme), extreme);
            for (const std::int64_t step : {INT64_MIN, INT64_C(-1), INT64_C(1), INT64_MAX}) {
                const auto day = calendar.addingDays(step, extreme);
                const auto minute = calendar.addingMinutes(step, extreme);
                EXPECT_TRUE(!day || (*day < extreme) == (step < 0));
                EXPECT_TRUE(!minute || (*minute < extreme) == (step < 0));
            }
            static_cast<void>(calendar.settingTime(23, 59, extreme));
        }
        EXPECT_EQ(calendar.addingDays(1, distantFuture), std::nullopt);
        EXPECT_EQ(calendar.addingMinutes(-1, distantPast), std::nullopt);
    }
}

// Restores the variable, so that tests in one process do not meet.
class ZoneVariable {
public:
    explicit ZoneVariable(const char* value) {
        if (const char* old = std::getenv("TZ"))
            old_ = old;
        setenv("TZ", value, 1);
    }
    ~ZoneVariable() { old_ ? setenv("TZ", old_->c_str(), 1) : unsetenv("TZ"); }
    ZoneVariable(const ZoneVariable&) = delete;
    ZoneVariable& operator=(const ZoneVariable&) = delete;

private:
    std::optional<std::string> old_;
};

TEST(Calendar, TheUsersZoneComesFromTheEnvironment) {
    const Instant midnightInApia = utc("2024-01-01 11:00:00");
    for (const char* value : {"Pacific/Apia", ":Pacific/Apia", "/usr/share/zoneinfo/Pacific/Apia"}) {
        const ZoneVariable variable(value);
        EXPECT_EQ(Calendar::current().startOfDay(midnightInApia), midnightInApia) << value;
    }
    for (const char* value : {"", ":", "Nowhere/Land", "../../etc/passwd", "/", "\xFF"}) {
        const ZoneVariable variable(value);
        EXPECT_NO_THROW(static_cast<void>(Calendar::current())) << value;
        EXPECT_FALSE(Calendar::inZone(value)) << value;
    }
}

} // namespace

} // namespace norvane
