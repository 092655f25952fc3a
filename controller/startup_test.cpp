#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

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

TEST(Startup, ABackupThatAlreadyRunsTakesThePlaceOfThePlannedOne) {
    ControllerHarness h;
    h.store.setSchedule({{IntervalRule{4}}, {{{Weekday::thursday}, TimeOfDay(13, 30), TimeOfDay(14, 10)}}});
    h.timeMachine.backupSeconds = 4.5 * 3600 + 8;
    h.timeMachine.begin();
    h.start();
    EXPECT_EQ(h.state().deferredFrom, minute(240));
    h.time.advance(1);
    EXPECT_TRUE(h.state().status.running);
    EXPECT_EQ(h.state().nextFire, std::nullopt);
    EXPECT_EQ(h.state().deferredFrom, std::nullopt);
    EXPECT_EQ(h.pollsOfAMinute(), 30);
    EXPECT_FALSE(h.state().healthData) << "not read every tenth fast tick";
    h.time.advanceTo(plusSeconds(minute(270), 12));
    EXPECT_FALSE(h.logged("Scheduled fire while a backup is already running — nothing to do"));
    EXPECT_TRUE(h.logged("Backup finished — snapshot verified"));
}

TEST(Startup, CatchesUpAMissedBackupAfterTheLaunchGrace) {
    ControllerHarness h;
    h.store.setLastBackupDate(minute(-60));
    h.store.setPlannedFireDate(minute(0));
    h.store.setLaunchGraceMinutes(7);
    h.start();
    EXPECT_TRUE(h.logged(
        "Backup was missed while not running (planned 2026-03-05 10:00:00 +0000) — catching up after "
        "launch grace"));
    EXPECT_EQ(h.state().nextFire, minute(7));
    EXPECT_TRUE(h.state().catchUpPending);
    h.time.advance(7 * 60 + 1);
    EXPECT_TRUE(h.logged("Scheduled backup requested"));
    EXPECT_FALSE(h.state().catchUpPending);
}

TEST(Startup, WhateverComesBeforeACatchUpTakesItsPlace) {
    const std::pair<const char*, std::function<void(ControllerHarness&)>> cases[] = {
        {"a request, even one that fails",
         [](auto& h) {
             h.timeMachine.toolsMissing = true;
             h.controller->requestBackup(false);
         }},
        {"a skip", [](auto& h) { h.controller->skipNext(); }},
        {"a backup of Time Machine's", [](auto& h) { h.timeMachine.begin(); }},
    };
    for (const auto& [what, happen] : cases) {
        ControllerHarness h;
        h.store.setLastBackupDate(minute(-60));
        h.store.setPlannedFireDate(minute(-30));
        h.start();
        h.time.advance(60);
        happen(h);
        h.time.advance(20 * 60);
        EXPECT_FALSE(h.logged("Scheduled backup requested")) << what;
    }
}

TEST(SystemEvents, WakingBeforeTheArmedInstantChangesNothing) {
    ControllerHarness h;
    h.startSettled();
    h.time.sleep(3600);
    h.systemEvents.handlers->didWake();
    h.time.advance(1);
    EXPECT_EQ(h.state().nextFire, minute(240));
    EXPECT_TRUE(h.loggedMessages().empty());
}

/// Disk and network come back only after the wake. The rest of the timer's wait may be shorter than the look
/// at Time Machine that a wake begins with.
TEST(SystemEvents, ADailyBackupSleptThroughIsMadeUpForTwoMinutesAfterTheWake) {
    for (const double waitLeft : {0.1, 600.0}) {
        ControllerHarness h;
        h.store.setSchedule({{DailyTimesRule{{TimeOfDay(12, 0)}}}, {}});
        h.startSettled();
        h.time.advanceTo(plusSeconds(minute(120), -waitLeft));
        h.time.disturb([] { return 1.0; }, 1);
        h.time.sleep(3 * 3600);
        h.files.paths.erase(h.timeMachine.mountPoint);
        const Instant woke = h.time.now();
        h.systemEvents.handlers->didWake();
        if (waitLeft > 1)
            h.systemEvents.handlers->clockChanged(); // the clock of the board was a little off
        h.time.advance(30);
        h.files.paths.insert(h.timeMachine.mountPoint);
        EXPECT_TRUE(h.logged("Woke past scheduled fire — catching up in 2 min"));
        EXPECT_TRUE(h.state().catchUpPending);
        EXPECT_NEAR(secondsBetween(woke, *h.state().nextFire), 120, 3);
        h.time.advance(110);
        EXPECT_TRUE(h.logged("Scheduled backup requested")) << waitLeft;
        EXPECT_EQ(h.store.failureStreak(), 0) << waitLeft;
    }
}

TEST(SystemEvents, AnOverdueIntervalComesBeforeTheCatchUp) {
    ControllerHarness h;
    h.startSettled();
    h.time.sleep(5 * 3600);
    h.systemEvents.handlers->didWake();
    h.time.advance(0.5);
    EXPECT_TRUE(h.logged("Woke past scheduled fire — catching up in 2 min"));
    EXPECT_LE(secondsBetween(h.time.now(), *h.state().nextFire), 1);
    EXPECT_FALSE(h.state().catchUpPending);
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
