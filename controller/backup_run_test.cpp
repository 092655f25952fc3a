#include "controller/backup_run.h"

#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace norvane {

namespace {

using End = BackupRun::End;
using CopyNews = BackupRun::CopyNews;

Instant second(double seconds) { return plusSeconds(harnessStart, seconds); }

TEST(BackupRun, ARequestIsWaitedForAMinute) {
    BackupRun run;
    run.request(second(-30));
    run.request(second(0));
    EXPECT_FALSE(run.neverStarted(second(60)));
    EXPECT_TRUE(run.neverStarted(second(60.1)));
    run.dropRequest();
    EXPECT_FALSE(run.neverStarted(second(99)));
    run.request(second(0));
    run.start(second(10));
    EXPECT_FALSE(run.neverStarted(second(99)));
    EXPECT_EQ(run.end(second(20)), End::unverified);
    run.request(second(30));
    EXPECT_EQ(run.soughtSince(), second(10)) << "the last backup is looked for beside a new request";
}

TEST(BackupRun, AStopIsForOneEndWithinThreeMinutes) {
    for (const auto& [seconds, end] :
         {std::pair{0.0, End::stopped}, {179.9, End::stopped}, {180.0, End::unverified}}) {
        BackupRun run;
        run.requestStop(second(0)); // maybe before it was seen
        run.start(second(0));
        EXPECT_EQ(run.end(second(seconds)), end) << seconds;
        EXPECT_EQ(run.soughtSince().has_value(), end == End::unverified) << seconds;
        run.start(second(1));
        EXPECT_FALSE(run.soughtSince()) << "a newer backup takes over";
        EXPECT_EQ(run.end(second(2)), End::unverified) << seconds;
    }
}

TEST(BackupRun, AStallIsToldOnceAndItsEndToo) {
    struct Look {
        double at;
        std::int64_t bytes;
        CopyNews news;
    };
    const Look looks[] = {{0, 1, CopyNews::none},    {500, 2, CopyNews::none},
                          {1099, 2, CopyNews::none}, {1100, 2, CopyNews::stalled},
                          {1800, 2, CopyNews::none}, {1900, 3, CopyNews::resumed},
                          {1910, 4, CopyNews::none}, {2600, 4, CopyNews::stalled}};
    BackupRun run;
    run.start(second(0));
    for (const Look& look : looks)
        EXPECT_EQ(run.copied(look.bytes, second(look.at)), look.news) << look.at;
    run.start(second(3000));
    EXPECT_EQ(run.copied(4, second(3700)), CopyNews::none) << "of another backup";
}

TMUtil::DestinationStatus record(std::vector<Instant> snapshots, std::optional<std::int64_t> result = {},
                                 std::vector<std::string> parameters = {}) {
    return {std::move(snapshots), {}, {}, {}, result, std::move(parameters)};
}

TEST(Records, SnapshotsCountUpTo120SecondsBeforeTheStart) {
    EXPECT_TRUE(hasSnapshotSince({record({second(-9999)}), record({second(-120), second(-999)})}, second(0)));
    EXPECT_FALSE(hasSnapshotSince({record({second(-120.1)}), record({})}, second(0)));
}

TEST(Records, TheFirstErrorIsReported) {
    EXPECT_EQ(reportedError({record({}), record({}, 0, {"Music"})}), "");
    EXPECT_EQ(reportedError({record({}, 0), record({}, 19, {"Documents", "Photos"}), record({}, 2)}),
              " — Time Machine reported error 19 — while processing: Documents, Photos");
}

} // namespace

} // namespace norvane
