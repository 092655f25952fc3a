#include "timemachine_linux/snapshots/snapshot_name.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(SnapshotName, IsLocalTimeAndReadsBack) {
    ::setenv("TZ", "Europe/Berlin", 1);
    ::tzset();
    const Instant summer{std::chrono::seconds(1714551300)}; // 2024-05-01 08:15:00 UTC
    EXPECT_EQ(snapshotName(summer), "2024-05-01-101500");
    EXPECT_EQ(parseSnapshotName("2024-05-01-101500"), summer);
    EXPECT_EQ(parseSnapshotName("2024-02-29-000000"), Instant(std::chrono::seconds(1709161200)));
    EXPECT_TRUE(parseSnapshotName("2024-10-27-023000")); // there twice
    for (const char* text :
         {"2024-13-01-101500", "2023-02-29-101500", "2024-05-01-241500", "2024-05-01-106000",
          "2024-05-01-101500.inProgress", "2024-05-01-10150", "2024_05-01-101500", "", "2024-00-01-101500",
          "2024-05-00-101500", "latest-snapshot!!"})
        EXPECT_FALSE(parseSnapshotName(text)) << text;
    ::unsetenv("TZ");
    ::tzset();
}

} // namespace

} // namespace norvane
