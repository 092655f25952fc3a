#include "controller/log/event_log.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"

namespace norvane {

namespace {

TEST(EventLog, StampsEveryLineInUtcAndKeepsTheMessageAsItIs) {
    using namespace std::chrono;
    SimulatedTime time(sys_days{year{2026} / 3 / 5} + 14h + 7min + 9s + 999ms);
    SimulatedLogFile file;
    const EventLog log(time, file);
    log.log("Verifying backup…");
    time.advance(0.001);
    log.log("two\nlines — one entry");
    EXPECT_EQ(file.text, "2026-03-05 14:07:09 +0000 Verifying backup…\n"
                         "2026-03-05 14:07:10 +0000 two\nlines — one entry\n");
}

TEST(EventLog, TimestampKeepsItsWidthForEveryInstant) {
    for (Instant instant : {distantPast, Instant{}, Instant{std::chrono::microseconds{-1}}, distantFuture})
        EXPECT_EQ(logTimestamp(instant).size(), 25U) << logTimestamp(instant);
    EXPECT_EQ(logTimestamp(Instant{std::chrono::microseconds{-1}}), "1969-12-31 23:59:59 +0000");
}

} // namespace

} // namespace norvane
