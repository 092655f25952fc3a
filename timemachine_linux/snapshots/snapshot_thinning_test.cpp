#include "timemachine_linux/snapshots/snapshot_thinning.h"

#include <gtest/gtest.h>

#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {

namespace {

const Instant now =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{18}; // Thursday

Instant hoursAgo(int hours) { return now - std::chrono::hours(hours); }

std::vector<Instant> keptOf(const std::vector<Instant>& dates) {
    std::vector<Snapshot> snapshots;
    for (const Instant date : dates)
        snapshots.push_back({snapshotName(date), date});
    const auto superseded = supersededSnapshots(snapshots, now);
    std::vector<Instant> kept;
    for (const Snapshot& snapshot : snapshots)
        if (std::find(superseded.begin(), superseded.end(), snapshot) == superseded.end())
            kept.push_back(snapshot.date);
    return kept;
}

TEST(Thinning, KeepsAllOfADayThenOneADayThenOneAWeek) {
    const auto day = [](int count) { return 24 * count; };
    EXPECT_EQ(keptOf({}), std::vector<Instant>{});
    EXPECT_EQ(keptOf({hoursAgo(day(400))}), (std::vector{hoursAgo(day(400))})); // the newest whole one
    EXPECT_EQ(keptOf({hoursAgo(25), hoursAgo(24), hoursAgo(1), hoursAgo(0)}),
              (std::vector{hoursAgo(25), hoursAgo(24), hoursAgo(1), hoursAgo(0)}));
    // The day before yesterday at 9, 12 and 17 o'clock: one is left.
    EXPECT_EQ(keptOf({hoursAgo(57), hoursAgo(54), hoursAgo(49), hoursAgo(1), hoursAgo(0)}),
              (std::vector{hoursAgo(49), hoursAgo(1), hoursAgo(0)}));
    // Monday to Wednesday seven weeks ago, and the Sunday before: one a week.
    EXPECT_EQ(keptOf({hoursAgo(day(53)), hoursAgo(day(52)), hoursAgo(day(51)), hoursAgo(day(50)), hoursAgo(1),
                      now}),
              (std::vector{hoursAgo(day(53)), hoursAgo(day(50)), hoursAgo(1), now}));
}

TEST(Thinning, AWrongClockTakesNothingAtOnce) {
    const int year = 24 * 365;
    const std::vector<Instant> recent{hoursAgo(year + 3), hoursAgo(year + 2), hoursAgo(year + 1)};
    // The first backup after a clock has jumped ahead, and after it was set right again.
    std::vector<Instant> ahead = recent;
    ahead.push_back(now);
    EXPECT_EQ(keptOf(ahead), ahead);
    const std::vector<Instant> back{hoursAgo(3), hoursAgo(2), hoursAgo(1), hoursAgo(-year)};
    EXPECT_EQ(keptOf(back), back);
}

} // namespace

} // namespace norvane
