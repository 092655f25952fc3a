#include "timemachine/health_data.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{20};

/// Seconds after 10:00 of that day.
Instant at(double seconds) { return plusSeconds(now, -36000 + seconds); }

HealthData assembled(std::vector<Instant> attempts, std::vector<Instant> snapshots) {
    TMUtil::DestinationStatus destination;
    destination.attemptDates = std::move(attempts);
    destination.snapshotDates = std::move(snapshots);
    return HealthData::assemble({destination}, std::nullopt, now);
}

TEST(HealthData, AnAttemptSucceedsWithASnapshotInItsWindow) {
    struct Case {
        const char* what;
        std::vector<double> attempts;
        double snapshot;
        std::vector<std::optional<double>> durations;
    };
    const std::optional<double> failed;
    const Case cases[] = {
        {"40 minutes later", {0, 3600}, 2400, {2400.0, failed}},
        {"after the next attempt began", {0, 3600}, 3900, {failed, 300.0}},
        {"exactly when the next began: only 90 s look-back counts it", {0, 3600}, 3600, {failed, 0.0}},
        {"a minute before the start", {0}, -60, {0.0}},
        {"exactly 90 s before the start", {0}, -90, {failed}},
        {"exactly 6 hours later", {0}, 21600, {failed}},
        {"just within 6 hours", {0}, 21599, {21599.0}},
        {"between two attempts 30 s apart", {0, 30}, 15, {15.0, 0.0}},
    };
    for (const Case& c : cases) {
        std::vector<Instant> attempts;
        for (double seconds : c.attempts)
            attempts.push_back(at(seconds));
        const HealthData data = assembled(attempts, {at(c.snapshot)});
        ASSERT_EQ(data.attempts.size(), c.durations.size()) << c.what;
        for (std::size_t i = 0; i < c.durations.size(); ++i) {
            EXPECT_EQ(data.attempts[i].duration, c.durations[i]) << c.what << ", attempt " << i;
            EXPECT_EQ(data.attempts[i].success, c.durations[i].has_value()) << c.what << ", attempt " << i;
        }
    }
}

TEST(HealthData, KeepsTheNewestTwentyAttemptsOfThirtyDays) {
    std::vector<Instant> attempts = {plusSeconds(now, -30 * 86400.0), plusSeconds(now, -31 * 86400.0)};
    EXPECT_TRUE(assembled(attempts, {}).attempts.empty());
    attempts.push_back(plusSeconds(now, -30 * 86400.0 + 1));
    EXPECT_EQ(assembled(attempts, {}).attempts.size(), 1U);
    for (int i = 1; i <= 25; ++i)
        attempts.push_back(at(-i * 3600.0));
    const HealthData data = assembled(attempts, {});
    ASSERT_EQ(data.attempts.size(), 20U);
    EXPECT_EQ(data.attempts.front().date, at(-20 * 3600.0));
    EXPECT_EQ(data.attempts.back().id, at(-3600.0));
}

TEST(HealthData, FiguresComeFromTheFirstDestination) {
    TMUtil::DestinationStatus first;
    first.snapshotDates = {at(10), at(-500), at(3)};
    first.bytesUsed = 5;
    TMUtil::DestinationStatus second;
    second.snapshotDates = {at(20)};
    const HealthData data = HealthData::assemble({first, second}, 77, now);
    EXPECT_EQ(data.lastSuccess, at(10));
    EXPECT_EQ(data.oldestBackup, at(-500));
    EXPECT_EQ(data.backupCount, 3);
    EXPECT_EQ(data.destinationBytesUsed, 5);
    EXPECT_EQ(data.destinationBytesAvailable, std::nullopt);
    EXPECT_EQ(data.sourceFreeBytes, 77);
    HealthData nothing;
    nothing.sourceFreeBytes = 77;
    EXPECT_EQ(HealthData::assemble({}, 77, now), nothing);
}

} // namespace

} // namespace norvane
