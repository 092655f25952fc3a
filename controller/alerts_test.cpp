#include "controller/alerts.h"

#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace norvane {

namespace {

TEST(Health, FollowsAgeAndStreak) {
    struct Case {
        double ageSeconds;
        std::int64_t streak;
        BackupHealth health;
    };
    const Case cases[] = {
        {86400, 0, BackupHealth::ok},      {86401, 0, BackupHealth::stale},
        {172800, 0, BackupHealth::stale},  {172801, 0, BackupHealth::critical},
        {3600, 1, BackupHealth::stale},    {3600, 2, BackupHealth::stale},
        {3600, 3, BackupHealth::critical}, {172801, 1, BackupHealth::critical},
    };
    for (const Case& c : cases)
        EXPECT_EQ(healthOf(plusSeconds(harnessStart, -c.ageSeconds), c.streak, harnessStart), c.health)
            << c.ageSeconds << " s, streak " << c.streak;
    EXPECT_EQ(healthOf({}, 0, harnessStart), BackupHealth::critical) << "a store that keeps nothing";
}

TEST(Health, ChangesAreLogged) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.store.setFailureStreak(1);
    h.store.setLastBackupDate(minute(-60));
    h.start();
    h.time.advance(90); // three ticks
    EXPECT_EQ(h.state().health, BackupHealth::stale);
    EXPECT_EQ(h.countLogged("Backup health: stale (last success 1h ago, failure streak 1)"), 1);
}

TEST(Watchdog, EachRuleAlertsOnceADay) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.timeMachine.snapshotDates = {minute(-3 * 1440)};
    h.timeMachine.bytesUsed = 900;
    h.timeMachine.bytesAvailable = 100;
    h.files.homeAvailableBytes = 14'900'000'000;
    h.startSettled();
    h.time.advance(20 * 3600);
    EXPECT_EQ(h.notifications.posted,
              (std::vector<Notification>{
                  {"No verified backup in 3 days",
                   "The last backup that actually reached your backup disk was D2026-03-02 10:00.", "stale",
                   "Back Up Now"},
                  {"Backup disk 90% full",
                   "Time Machine will thin old backups to cope, shortening your history. "
                   "Consider a larger destination.",
                   "destinationFull"},
                  {"Startup disk is low on space",
                   "14.9 GB free — backups need at least 10 GB to stage and will start failing below that.",
                   "sourceLow"}}));
    h.time.advance(4 * 3600 + 60);
    EXPECT_EQ(h.notifications.posted.size(), 3U) << "exactly a day after the last is too early";
    h.time.advance(300);
    EXPECT_EQ(h.notifications.posted.size(), 6U);
    EXPECT_EQ(h.notifications.posted[3].title, "No verified backup in 4 days");
}

TEST(Watchdog, WarnsOnlyWithNeed) {
    const SimulatedMachine m(harnessStart);
    SimulatedUserDefaults defaults;
    Alerts alerts(m.texts, m.formats, defaults);
    HealthData data;
    data.lastSuccess = minute(-3 * 1440);
    data.destinationBytesUsed = 5;
    data.destinationBytesAvailable = -5;
    data.sourceFreeBytes = 15'000'000'000;
    EXPECT_TRUE(alerts.warnings(data, true, harnessStart).empty()) << "the running backup may mend it";
    EXPECT_EQ(alerts.warnings(data, false, harnessStart).size(), 1U);
    defaults.set("watchdogstale.lastSent", {std::string("yesterday")});
    EXPECT_TRUE(alerts.mayWarn("stale", harnessStart)) << "a gate of another type counts as none";
}

TEST(Watchdog, HealthDataIsRefreshedEveryTenthSlowTick) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.timeMachine.snapshotDates = {minute(-40 * 60)};
    h.start();
    h.time.advance(299);
    EXPECT_FALSE(h.state().healthData);
    h.timeMachine.autoBackup = true;
    h.time.advance(2);
    EXPECT_TRUE(h.state().healthData);
    EXPECT_EQ(h.state().autoBackupOn, true);
    EXPECT_TRUE(h.notifications.posted.empty()) << "a backup of two days ago is no old one";
}

} // namespace

} // namespace norvane
