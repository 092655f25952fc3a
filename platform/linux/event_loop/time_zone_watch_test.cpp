#include "platform/linux/event_loop/time_zone_watch.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <unicode/timezone.h>

#include "platform/linux/time/icu_formats.h"
#include "tests/support/session_test.h"

namespace norvane {

namespace {

using TimeZoneWatchTest = SessionTest;

TEST_F(TimeZoneWatchTest, DisplayedTimesFollowTheTimeZone) {
    const ScratchFolder etc;
    int changes = 0;
    const TimeZoneWatch watch(etc.path(), [&] { ++changes; });
    const TimeZoneWatch nowhere(etc.path("missing"), [&] { changes += 100; });
    std::filesystem::create_symlink("/usr/share/zoneinfo/UTC", etc.path("localtime.new"));
    settle();
    EXPECT_EQ(changes, 0);
    std::filesystem::rename(etc.path("localtime.new"), etc.path("localtime"));
    EXPECT_TRUE(soon([&] { return changes == 1; }));

    const Instant noon = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{12};
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("UTC"));
    const IcuFormats formats;
    const std::string before = formats.shortTime(noon);
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Tokyo"));
    EXPECT_NE(formats.shortTime(noon), before);
    setenv("TZ", "UTC", 1);
    adoptSystemTimeZone();
    EXPECT_EQ(formats.shortTime(noon), before);
    unsetenv("TZ");
}

} // namespace

} // namespace norvane
