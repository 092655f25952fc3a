#include <gtest/gtest.h>

#include "controller/controller_harness.h"

namespace norvane {
namespace {

using Messages = std::vector<std::string>;

TEST(Startup, FirstLaunchCountsIntervalsFromNow) {
    ControllerHarness h;
    h.start();
    EXPECT_EQ(h.loggedMessages(),
              (Messages{"——— Launched v1.0 (pid 4711) ———", "First launch: interval timing starts now",
                        "Next backup scheduled for 2026-03-05 14:00:00 +0000"}));
    EXPECT_EQ(h.state().nextFire, minute(240));
    EXPECT_EQ(h.store.plannedFireDate(), minute(240));
    EXPECT_EQ(h.processActivity.reason, "Norvane schedules Time Machine backups");
    EXPECT_EQ(BackupController::current(), h.controller.get());
    h.controller.reset();
    EXPECT_EQ(BackupController::current(), nullptr);
}

TEST(Startup, ChecksFillInWhatIsKnownOfTimeMachine) {
    ControllerHarness h;
    h.timeMachine.autoBackup = true;
    h.files.folders["/reports"] = {{"Norvane-1.ips", minute(-1)}, {"Norvane-2.ips", minute(-1)}};
    h.start();
    EXPECT_EQ(h.state().autoBackupOn, std::nullopt);
    h.time.advance(1);
    EXPECT_EQ(h.state().destinationName, "Backup Disk");
    EXPECT_EQ(h.state().autoBackupOn, true);
    EXPECT_EQ(h.state().pendingCrashReport, "/reports/Norvane-2.ips");
    EXPECT_TRUE(h.logged("Crash log from a previous run found: Norvane-2.ips"));
    ASSERT_EQ(h.notifications.posted.size(), 1U);
    EXPECT_EQ(h.notifications.posted[0].title, "Norvane crashed last time");
    h.controller->clearPendingCrashReport();
    EXPECT_EQ(h.state().pendingCrashReport, std::nullopt);
}

TEST(Startup, AdoptsABackupThatAlreadyRuns) {
    ControllerHarness h;
    h.timeMachine.begin();
    h.start();
    h.time.advance(1);
    EXPECT_TRUE(h.state().status.running);
    EXPECT_EQ(h.state().nextFire, std::nullopt);
    h.time.advance(600);
    EXPECT_TRUE(h.logged("Backup finished — snapshot verified"));
}

TEST(Startup, CatchesUpAMissedBackupAfterTheLaunchGrace) {
    ControllerHarness h;
    h.store.setLastBackupDate(minute(-60));
    h.store.setPlannedFireDate(minute(-30));
    h.store.setLaunchGraceMinutes(7);
    h.start();
    EXPECT_TRUE(h.logged(
        "Backup was missed while not running (planned 2026-03-05 09:30:00 +0000) — catching up after "
        "launch grace"));
    EXPECT_EQ(h.state().nextFire, minute(7));
    EXPECT_TRUE(h.state().catchUpPending);
    h.time.advance(7 * 60 + 1);
    EXPECT_TRUE(h.logged("Scheduled backup requested"));
    EXPECT_FALSE(h.state().catchUpPending);
}

TEST(Startup, MissedBackupWaitsOutABlackoutAndYieldsToAnEarlierRegularOne) {
    ControllerHarness h;
    h.store.setLastBackupDate(minute(-60));
    h.store.setPlannedFireDate(minute(-30));
    Schedule schedule = Schedule::defaultSchedule();
    schedule.blackouts = {{{Weekday::thursday}, TimeOfDay(9, 0), TimeOfDay(10, 45)}};
    h.store.setSchedule(schedule);
    h.start();
    EXPECT_EQ(h.state().nextFire, minute(45));
    EXPECT_TRUE(h.state().catchUpPending);

    h.store.setPlannedFireDate(minute(-30));
    h.store.setSchedule({{DailyTimesRule{{TimeOfDay(10, 20)}}}, schedule.blackouts});
    h.start();
    EXPECT_EQ(h.state().nextFire, minute(45)) << "both fall into the blackout";
    EXPECT_FALSE(h.state().catchUpPending) << "the regular one wins a tie";
    EXPECT_EQ(h.state().deferredFrom, minute(20));
}

TEST(Startup, AFuturePlannedFireIsNoMissedBackup) {
    ControllerHarness h;
    h.store.setLastBackupDate(minute(-60));
    h.store.setPlannedFireDate(minute(30));
    h.start();
    EXPECT_FALSE(h.state().catchUpPending);
    EXPECT_EQ(h.state().nextFire, minute(180));
}

TEST(SystemEvents, WakingPastTheArmedInstantCatchesUpInTwoMinutes) {
    ControllerHarness h;
    h.startSettled();
    h.time.sleep(5 * 3600);
    h.systemEvents.handlers->didWake();
    h.time.settle();
    h.time.advance(1);
    EXPECT_TRUE(h.logged("Woke past scheduled fire — catching up in 2 min"));
    EXPECT_LE(secondsBetween(h.time.now(), *h.state().nextFire), 2) << "the overdue interval is due at once";

    ControllerHarness early;
    early.startSettled();
    const auto planned = early.state().nextFire;
    early.time.sleep(3600);
    early.systemEvents.handlers->didWake();
    early.time.advance(1);
    EXPECT_EQ(early.state().nextFire, planned);
    EXPECT_TRUE(early.loggedMessages().empty());
}

TEST(SystemEvents, ClockAndAccentChangesAreFollowed) {
    ControllerHarness h;
    h.startSettled();
    h.time.setWallClock(minute(239));
    h.systemEvents.handlers->clockChanged();
    EXPECT_EQ(h.loggedMessages(), Messages{"System clock changed — rescheduling"});
    h.time.advance(61);
    EXPECT_TRUE(h.logged("Scheduled backup requested")) << "the timer was armed anew";

    int notices = 0;
    const auto subscription = h.controller->subscribe([&] { ++notices; });
    h.systemEvents.handlers->accentColorChanged();
    EXPECT_EQ(h.state().accentEpoch, 1);
    EXPECT_EQ(notices, 1);
}

TEST(Lifetime, LateResultsOfAGoneControllerAreDropped) {
    ControllerHarness h;
    h.start();
    h.controller->requestBackup(false);
    h.controller.reset();
    const std::string before = h.logFile.text;
    h.time.advance(3600);
    EXPECT_EQ(h.logFile.text, before);
    EXPECT_FALSE(h.systemEvents.handlers.has_value());
}

} // namespace
} // namespace norvane
