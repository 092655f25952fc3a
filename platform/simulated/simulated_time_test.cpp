#include "platform/simulated/simulated_time.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(SimulatedTime, TimersCountRunningTimeAndTheWallClockGoesItsOwnWay) {
    SimulatedTime time(Instant{});
    std::string happened;
    const auto first = time.once(10, 0, [&] { happened += "once "; });
    auto second = time.repeating(4, 0, [&] { happened += "tick "; });
    const auto cancelled = time.once(1, 0, [&] { second.reset(); });
    time.sleep(3600);
    EXPECT_EQ(happened, "");
    time.setWallClock(Instant{});
    time.advance(9);
    EXPECT_EQ(happened, "") << "the repeating timer was cancelled at 1 s";
    time.advance(1);
    EXPECT_EQ(happened, "once ");
    EXPECT_EQ(time.now(), plusSeconds(Instant{}, 10));
}

TEST(SimulatedTime, BackgroundWorkDeliversAfterTheTimeItSpent) {
    SimulatedTime time(Instant{});
    double deliveredAt = -1;
    auto owner = std::make_unique<Lifetime>();
    const auto start = [&] {
        runInBackground(
            time, *owner,
            [&time] {
                time.spend(2.5);
                return 42;
            },
            [&](int) { deliveredAt = secondsBetween(Instant{}, time.now()); });
    };
    start();
    time.advance(2);
    EXPECT_EQ(deliveredAt, -1);
    time.advance(1);
    EXPECT_EQ(deliveredAt, 2.5);
    start();
    owner.reset();
    time.advance(10);
    EXPECT_EQ(deliveredAt, 2.5) << "the owner is gone";
}

} // namespace

} // namespace norvane
