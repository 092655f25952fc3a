#include <gtest/gtest.h>

#include "controller/controller_harness.h"

namespace norvane {
namespace {

TEST(Health, FollowsAgeAndStreak) {
    struct Case {
        double ageSeconds;
        std::int64_t streak;
        BackupHealth health;
    };
    const Case cases[] = {
        {86400, 0, BackupHealth::ok},      {86430, 0, BackupHealth::stale},
        {172800, 0, BackupHealth::stale},  {172830, 0, BackupHealth::critical},
        {3600, 1, BackupHealth::stale},    {3600, 2, BackupHealth::stale},
        {3600, 3, BackupHealth::critical}, {172830, 1, BackupHealth::critical},
    };
    for (const Case& c : cases) {
        ControllerHarness h;
        h.store.setSchedule({{}, {}});
        h.store.setFailureStreak(c.streak);
        h.store.setLastBackupDate(plusSeconds(harnessStart, 30 - c.ageSeconds));
        h.start();
        h.time.advance(30); // the first tick
        EXPECT_EQ(h.state().health, c.health) << c.ageSeconds << " s, streak " << c.streak;
    }
}

TEST(Health, AChangeIsLoggedOnce) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.startSettled();
    h.time.advance(2.5 * 86400);
    EXPECT_EQ(h.countLogged("Backup health: stale (last success 24h ago, failure streak 0)"), 1);
    EXPECT_EQ(h.countLogged("Backup health: critical (last success 48h ago, failure streak 0)"), 1);
}

TEST(Watchdog, EachRuleAlertsOnceADay) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.timeMachine.snapshotDates = {minute(-3 * 1440)};
    h.timeMachine.bytesUsed = 905;
    h.timeMachine.bytesAvailable = 95;
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
    h.time.advance(5 * 3600);
    EXPECT_EQ(h.notifications.posted.size(), 6U);
    EXPECT_EQ(h.notifications.posted[3].title, "No verified backup in 4 days");
}

TEST(Watchdog, DoesNotAlertOrUseUpItsGateWithoutNeed) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.timeMachine.snapshotDates = {minute(-3 * 1440)};
    h.timeMachine.bytesUsed = 0;
    h.timeMachine.bytesAvailable = 0;
    h.timeMachine.backupSeconds = 3600;
    h.defaults.set("watchdogsourceLow.lastSent", {std::string("yesterday")});
    h.start();
    h.controller->requestBackup(false);
    h.time.advance(60);
    h.controller->refreshHealthData();
    h.time.advance(60);
    ASSERT_TRUE(h.state().healthData);
    EXPECT_TRUE(h.notifications.posted.empty());
    EXPECT_FALSE(h.defaults.object("watchdogstale.lastSent")) << "the running backup may mend it";
    EXPECT_FALSE(h.defaults.object("watchdogdestinationFull.lastSent"));

    h.files.homeAvailableBytes = 14'000'000'000;
    h.controller->refreshHealthData();
    h.time.advance(1);
    EXPECT_EQ(h.notifications.posted.size(), 1U) << "a gate of another type counts as none";
}

TEST(Watchdog, HealthDataIsRefreshedEveryTenthSlowTick) {
    ControllerHarness h;
    h.store.setSchedule({{}, {}});
    h.start();
    h.time.advance(299);
    EXPECT_FALSE(h.state().healthData);
    h.timeMachine.autoBackup = true;
    h.time.advance(2);
    EXPECT_TRUE(h.state().healthData);
    EXPECT_EQ(h.state().autoBackupOn, true);
}

} // namespace
} // namespace norvane
