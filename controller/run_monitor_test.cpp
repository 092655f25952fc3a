#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace norvane {

namespace {

TEST(Starting, EveryWayItFailsIsTold) {
    struct Case {
        const char* what;
        std::function<void(ControllerHarness&)> arrange;
        double withinSeconds;
        std::string message;
        bool pollsFast; // while the failure is still ahead
    };
    const Case cases[] = {
        {"full startup disk", [](auto& h) { h.files.homeAvailableBytes = 9'999'999'999; }, 0,
         "Startup disk is nearly full (10.0 GB free) — Time Machine needs room to stage backups. Free up "
         "space",
         false},
        {"disk not mounted", [](auto& h) { h.files.paths.clear(); }, 1,
         "Backup disk \"Backup Disk\" isn't mounted", false},
        {"tool fails",
         [](auto& h) {
             h.timeMachine.startsWith = CommandResult{65, "", " no way\n"};
         },
         1, "startbackup exited 65: no way", true},
        {"tool missing", [](auto& h) { h.timeMachine.toolsMissing = true; }, 1, "startbackup could not run",
         true},
        {"never starts", [](auto& h) { h.timeMachine.startsBackups = false; }, 63,
         "Backup never started within 60s of the request", true},
        {"network silent",
         [](auto& h) {
             h.timeMachine.kind = "Network";
             h.timeMachine.url = "smb://nas.local/TM";
         },
         1,
         "Backup drive \"Backup Disk\" isn't responding on the network — it may be asleep, off, or on a "
         "different network",
         true},
    };
    for (const Case& c : cases) {
        ControllerHarness h;
        h.startSettled();
        h.time.advanceTo(plusSeconds(minute(240), -20)); // shortly before the planned one
        c.arrange(h);
        h.controller->requestBackup(false);
        h.time.advance(c.withinSeconds);
        EXPECT_EQ(h.state().lastEvent, c.message) << c.what;
        EXPECT_EQ(h.logged("Manual backup requested"), c.pollsFast) << c.what;
        EXPECT_EQ(h.store.failureStreak(), 1) << c.what;
        EXPECT_GE(secondsBetween(h.time.now(), *h.state().nextFire), 890) << c.what;
        EXPECT_EQ(h.pollsOfAMinute(), 2) << c.what;
        EXPECT_EQ(h.store.failureStreak(), 1) << c.what << ", told once";
        EXPECT_FALSE(h.logged("Scheduled backup requested")) << c.what;
    }
}

TEST(Starting, AnotherBackupDiskIsLearnedBeforeItIsMissed) {
    ControllerHarness h;
    h.startSettled();
    h.files.paths = {"/Volumes/Other"};
    h.timeMachine.mountPoint = "/Volumes/Other";
    h.controller->requestBackup(false);
    h.time.advance(400);
    EXPECT_TRUE(h.logged("Backup finished — snapshot verified"));
    EXPECT_EQ(h.store.failureStreak(), 0);
}

TEST(Starting, AnotherBackupDiskIsLearnedWithTheOtherFactsThatChange) {
    ControllerHarness h;
    h.startSettled();
    h.files.paths = {"/Volumes/Other"};
    h.timeMachine.mountPoint = "/Volumes/Other";
    h.timeMachine.name = "Other Disk";
    h.time.advance(301);
    EXPECT_EQ(h.state().destinationName, "Other Disk");
    h.timeMachine.mounted = false; // away: what is known stays known
    h.files.paths.clear();
    h.time.advance(301);
    h.timeMachine.toolsMissing = true;
    h.time.advance(301);
    EXPECT_EQ(h.state().destinationName, "Other Disk");
    h.timeMachine.toolsMissing = false;
    h.controller->requestBackup(false);
    h.time.advance(1);
    EXPECT_EQ(h.state().lastEvent, "Backup disk \"Other Disk\" isn't mounted");
    h.timeMachine.name = "Third Disk"; // nobody knows where it would be
    h.controller->requestBackup(false);
    h.time.advance(1);
    EXPECT_TRUE(h.state().status.running);
}

/// Looking for the disk takes a moment, in which the user may change their mind.
TEST(Starting, APauseOvertakesADueBackupThatLooksForItsDisk) {
    ControllerHarness h;
    h.startSettled();
    h.files.paths.clear();
    h.time.disturb([] { return 1.0; }, 1);
    h.time.advanceTo(minute(240));
    h.time.advance(0.5);
    h.controller->pause(minute(600));
    h.time.advance(60);
    EXPECT_EQ(h.store.failureStreak(), 0);
    EXPECT_EQ(h.state().nextFire, minute(600));
    h.controller->requestBackup(false);
    h.controller->requestBackup(false);
    h.controller->pause(minute(700));
    h.time.advance(60);
    EXPECT_EQ(h.store.failureStreak(), 1) << "what the user asks for goes on, once";
    h.controller->requestBackup(false);
    h.files.paths.insert(h.timeMachine.mountPoint);
    h.controller->requestBackup(false);
    h.time.advance(10);
    EXPECT_EQ(h.countLogged("Manual backup requested"), 1) << "the later request overtakes the earlier";
}

TEST(Starting, ABackupThatRunsMeanwhileEndsTheLookForTheDisk) {
    ControllerHarness h;
    h.startSettled();
    h.files.paths.clear();
    h.time.disturb([] { return 1.0; }, 1);
    h.timeMachine.begin();
    h.systemEvents.handlers->didWake(); // which asks for the status
    h.controller->requestBackup(false);
    h.time.advance(20);
    EXPECT_EQ(h.state().lastEvent, "Backup started");
    EXPECT_EQ(h.store.failureStreak(), 0);
}

TEST(Starting, ABackUpNowThatLooksForItsDiskIsNotLostToADueOne) {
    ControllerHarness h;
    ConditionsConfig conditions;
    conditions.requireAC = true;
    h.store.setConditions(conditions);
    h.measurements.power.onAC = false;
    h.startSettled();
    h.files.paths.clear();
    h.time.disturb([] { return 1.0; }, 5);
    h.time.advanceTo(minute(239.95));
    h.controller->requestBackup(false);
    h.time.advance(60);
    EXPECT_TRUE(h.logged("Backup disk \"Backup Disk\" isn't mounted"));
}

TEST(Starting, ANetworkDestinationIsTriedPortByPort) {
    ControllerHarness h;
    h.startSettled();
    h.timeMachine.kind = "Network";
    h.timeMachine.url = "smb://nas.local/TM";
    h.network.answeringHosts = {"nas.local:548"};
    h.controller->refreshDestination();
    h.time.advance(1);
    h.files.paths.clear(); // a share is mounted when it is needed
    h.controller->requestBackup(false);
    h.time.advance(5);
    EXPECT_TRUE(h.logged("Backup started"));
    EXPECT_EQ(h.network.tried,
              (std::vector<NetworkEndpoint>{HostEndpoint{"nas.local", 445}, HostEndpoint{"nas.local", 548}}));
    EXPECT_EQ(h.network.timeout, 5);
}

TEST(Starting, NeedsTenGigabytesAndOfALocalDestinationNoNetwork) {
    ControllerHarness h;
    h.startSettled();
    h.files.homeAvailableBytes = 10'000'000'000;
    h.timeMachine.url = "smb://nas.local/TM";
    h.controller->requestBackup(false);
    EXPECT_EQ(h.state().nextFire, std::nullopt);
    h.time.advance(1);
    EXPECT_EQ(h.state().lastEvent, "Backup started");
}

TEST(Running, AStalledCopyIsToldOnceAndItsEndToo) {
    for (const auto& [diskGone, reason] : {std::pair{false, "Time Machine hasn't made progress in a while. "},
                                           {true, "Your backup disk seems to have disconnected — "}}) {
        ControllerHarness h;
        h.startSettled();
        h.timeMachine.stallsAt = 100'000'000; // reached in 30 s
        h.controller->requestBackup(false);
        h.time.advance(620);
        EXPECT_FALSE(h.state().stalled);
        if (diskGone)
            h.files.paths.clear();
        h.time.advance(850);
        EXPECT_TRUE(h.state().stalled);
        EXPECT_EQ(h.countLogged("Backup appears stalled — no progress in 10 min"), 1);
        ASSERT_EQ(h.notifications.posted.size(), 1U);
        EXPECT_EQ(h.notifications.posted[0].title, "Backup appears stalled");
        EXPECT_TRUE(h.notifications.posted[0].body.starts_with(reason));
        h.timeMachine.stallsAt = 200'000'000;
        h.time.advance(4);
        EXPECT_FALSE(h.state().stalled);
        EXPECT_TRUE(h.logged("Backup progress resumed"));
        h.timeMachine.phase = "Finishing";
        h.time.advance(700);
        EXPECT_FALSE(h.state().stalled) << "only a copy is expected to go on";
    }
}

TEST(Ending, AStoppedBackupIsNeitherVerifiedNorAFailure) {
    ControllerHarness h;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(30);
    h.controller->stopBackup();
    h.time.advance(3);
    EXPECT_EQ(h.state().lastEvent, "Backup stopped");
    EXPECT_EQ(h.pollsOfAMinute(), 2);
    EXPECT_TRUE(h.state().nextFire);
    EXPECT_EQ(h.store.failureStreak(), 0);
}

TEST(Verification, LooksForTwentySecondsThenReportsWhatTimeMachineSays) {
    ControllerHarness h;
    h.timeMachine.leavesSnapshots = false;
    h.timeMachine.result = 19;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(300 + 19); // the end is seen at once, the first look follows, the fifth 20 s later
    EXPECT_EQ(h.state().lastEvent, "Verifying backup…");
    h.time.advance(4);
    EXPECT_EQ(h.state().lastEvent, "Backup ended without a new snapshot on any destination — Time Machine "
                                   "reported error 19");
    EXPECT_EQ(h.pollsOfAMinute(), 2);
}

TEST(Verification, ALateSnapshotCounts) {
    ControllerHarness h;
    h.timeMachine.leavesSnapshots = false;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(312);
    ASSERT_EQ(h.state().lastEvent, "Verifying backup…");
    h.timeMachine.snapshotDates.push_back(h.time.now());
    h.time.advance(6);
    EXPECT_EQ(h.state().lastEvent, "Backup finished — snapshot verified");
    EXPECT_EQ(h.state().healthData->backupCount, 1) << "the history is read anew";
    EXPECT_EQ(h.store.lastBackupDate(), h.state().lastBackupDate);
}

TEST(Verification, WithoutRecordsABackupCountsAsFinished) {
    ControllerHarness h;
    h.store.setFailureStreak(2);
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(100);
    h.timeMachine.toolsMissing = true;
    h.time.advance(4);
    EXPECT_EQ(h.state().lastEvent, "Backup finished (snapshot verification unavailable)");
    EXPECT_EQ(h.store.failureStreak(), 0);
}

TEST(Failure, RetriesWaitLongerAndSurviveARestart) {
    ControllerHarness h;
    h.store.setSchedule({{DailyTimesRule{{TimeOfDay(10, 45)}}}, {}});
    h.startSettled();
    h.timeMachine.startsWith = CommandResult{1, "", "busy"};
    h.controller->requestBackup(false);
    h.time.advance(1);
    EXPECT_EQ(h.notifications.posted.back(),
              (Notification{"Backup failed", "Startbackup exited 1: busy. Retrying around T10:20.", "failure",
                            "Back Up Now"}));
    h.start();
    h.controller->requestBackup(false);
    h.time.advance(1);
    h.controller->requestBackup(false);
    h.time.advance(1);
    EXPECT_EQ(h.store.failureStreak(), 3);
    EXPECT_EQ(h.notifications.posted.back().title, "Backups are failing (3 in a row)");
    EXPECT_TRUE(h.notifications.posted.back().body.ends_with("Next attempt around T11:05."));
    EXPECT_EQ(h.notifications.posted.back().matter, "failure") << "takes the place of the first two";
    EXPECT_EQ(h.state().health, BackupHealth::critical);
    h.timeMachine.startsWith.reset();
    h.controller->requestBackup(false);
    h.time.advance(305);
    EXPECT_EQ(h.store.failureStreak(), 0);
    EXPECT_EQ(h.state().health, BackupHealth::ok);
    EXPECT_EQ(h.state().nextFire, minute(45)) << "nothing is to be retried";
}

TEST(Polling, AsksOnceAtATime) {
    ControllerHarness h;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(10);
    h.time.disturb([] { return 1.0; }, 5); // each answer takes ten seconds
    EXPECT_NEAR(h.pollsOfAMinute(), 5, 1);
}

TEST(Polling, AGapBetweenTicksIsLogged) {
    ControllerHarness h;
    h.startSettled();
    h.time.advance(30);
    h.time.sleep(2000);
    h.time.advance(30);
    EXPECT_TRUE(
        h.logged("Timer gap: 2030s between polls (expected ~30s) — sleep, system throttling, or a stall"));
    h.timeMachine.begin();
    h.systemEvents.handlers->didWake();
    h.time.advance(1);
    EXPECT_TRUE(h.state().status.running) << "a wake looks by itself";
}

} // namespace

} // namespace norvane
