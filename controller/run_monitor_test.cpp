#include <gtest/gtest.h>

#include "controller/controller_harness.h"

namespace norvane {
namespace {

const std::string noSnapshot = "Backup ended without a new snapshot on any destination";

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
        {"disk not mounted", [](auto& h) { h.files.paths.clear(); }, 0,
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
         "different "
         "network",
         true},
    };
    for (const Case& c : cases) {
        ControllerHarness h;
        h.startSettled();
        c.arrange(h);
        h.controller->requestBackup(false);
        h.time.advance(c.withinSeconds);
        EXPECT_EQ(h.state().lastEvent, c.message) << c.what;
        EXPECT_EQ(h.logged("Manual backup requested"), c.pollsFast) << c.what;
        EXPECT_EQ(h.store.failureStreak(), 1) << c.what;
        EXPECT_GE(secondsBetween(h.time.now(), *h.state().nextFire), 890) << c.what;
    }
}

TEST(Starting, ANetworkDestinationIsTriedPortByPort) {
    ControllerHarness h;
    h.timeMachine.kind = "Network";
    h.timeMachine.url = "smb://nas.local/TM";
    h.timeMachine.mountPoint = "";
    h.network.answeringHosts = {"nas.local:548"};
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(5);
    EXPECT_TRUE(h.logged("Backup started"));
    EXPECT_EQ(h.network.tried,
              (std::vector<NetworkEndpoint>{HostEndpoint{"nas.local", 445}, HostEndpoint{"nas.local", 548}}));
}

TEST(Starting, FreeBytesAreJudgedToTheByte) {
    ControllerHarness h;
    h.startSettled();
    h.files.homeAvailableBytes = 10'000'000'000;
    h.controller->requestBackup(false);
    EXPECT_EQ(h.state().lastEvent, "Manual backup requested");
}

TEST(Running, AStalledCopyIsToldOnceAndItsEndToo) {
    ControllerHarness h;
    h.startSettled();
    h.timeMachine.stallsAt = 300'000'000;
    h.controller->requestBackup(false);
    h.time.advance(1500);
    EXPECT_TRUE(h.state().stalled);
    EXPECT_EQ(h.countLogged("Backup appears stalled — no progress in 10 min"), 1);
    ASSERT_EQ(h.notifications.posted.size(), 1U);
    EXPECT_EQ(h.notifications.posted[0].title, "Backup appears stalled");
    EXPECT_TRUE(h.notifications.posted[0].body.starts_with("Time Machine hasn't made progress"));
    h.timeMachine.backupSeconds = 3000;
    h.timeMachine.stallsAt.reset();
    h.time.advance(4);
    EXPECT_FALSE(h.state().stalled);
    EXPECT_TRUE(h.logged("Backup progress resumed"));
}

TEST(Running, AStallWithTheDiskGoneSaysSo) {
    ControllerHarness h;
    h.startSettled();
    h.timeMachine.stallsAt = 1000;
    h.controller->requestBackup(false);
    h.time.advance(10);
    h.files.paths.clear();
    h.time.advance(620);
    ASSERT_EQ(h.notifications.posted.size(), 1U);
    EXPECT_EQ(h.notifications.posted[0].body,
              "Your backup disk seems to have disconnected — no progress in a while.");
}

TEST(Ending, AStopWithinThreeMinutesIsNoFailure) {
    ControllerHarness h;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(30);
    h.controller->stopBackup();
    h.time.advance(5);
    EXPECT_TRUE(h.logged("Backup stopped"));
    EXPECT_FALSE(h.logged("Verifying backup…"));
    EXPECT_EQ(h.store.failureStreak(), 0);
    EXPECT_TRUE(h.state().nextFire);
}

TEST(Ending, AnEndLongAfterTheStopIsVerified) {
    ControllerHarness h;
    h.startSettled();
    h.timeMachine.ignoresStop = true;
    h.controller->requestBackup(false);
    h.time.advance(30);
    h.controller->stopBackup();
    h.time.advance(300);
    EXPECT_TRUE(h.logged("Backup finished — snapshot verified"));
}

TEST(Verification, LooksFiveTimesThenReportsWhatTimeMachineSays) {
    ControllerHarness h;
    h.timeMachine.leavesSnapshots = false;
    h.timeMachine.result = 19;
    h.timeMachine.messageParameters = {"Documents", "Photos"};
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(300 + 19); // the end is seen at once, the first look follows, the fifth 20 s later
    EXPECT_EQ(h.state().lastEvent, "Verifying backup…");
    h.time.advance(4);
    EXPECT_EQ(h.state().lastEvent,
              noSnapshot + " — Time Machine reported error 19 — while processing: Documents, Photos");
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
    EXPECT_EQ(h.store.lastBackupDate(), h.state().lastBackupDate);
}

TEST(Verification, SnapshotsCountUpTo120SecondsBeforeTheStart) {
    for (const auto& [age, counts] : {std::pair{119.0, true}, std::pair{121.0, false}}) {
        ControllerHarness h;
        h.timeMachine.leavesSnapshots = false;
        h.startSettled();
        h.timeMachine.begin();
        h.controller->requestBackup(false);
        h.time.advance(0.2);
        ASSERT_TRUE(h.state().status.running);
        h.timeMachine.snapshotDates = {plusSeconds(h.time.now(), -age - 0.1)};
        h.time.advance(330);
        EXPECT_EQ(h.logged("Backup finished — snapshot verified"), counts) << age;
    }
}

TEST(Verification, WithoutRecordsABackupCountsAsFinished) {
    ControllerHarness h;
    h.store.setFailureStreak(2);
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(100);
    h.timeMachine.preferencesReadable = false;
    h.time.advance(220);
    EXPECT_EQ(h.state().lastEvent, "Backup finished (snapshot verification unavailable)");
    EXPECT_EQ(h.store.failureStreak(), 0);
}

TEST(Failure, RetriesWaitLongerAndSurviveARestart) {
    ControllerHarness h;
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
    EXPECT_EQ(h.notifications.posted.back().matter, "failure") << "takes the place of the first two";
    EXPECT_EQ(h.state().health, BackupHealth::critical);
    h.timeMachine.startsWith.reset();
    h.controller->requestBackup(false);
    h.time.advance(400);
    EXPECT_EQ(h.store.failureStreak(), 0);
    EXPECT_EQ(h.state().health, BackupHealth::ok);
}

TEST(Polling, AGapBetweenTicksIsLogged) {
    ControllerHarness h;
    h.startSettled();
    h.time.advance(30);
    h.time.sleep(2000);
    h.time.advance(30);
    EXPECT_TRUE(
        h.logged("Timer gap: 2030s between polls (expected ~30s) — sleep, system throttling, or a stall"));
}

TEST(Polling, AFailingStatusEndsTheBackupAndVerificationDecides) {
    ControllerHarness h;
    h.startSettled();
    h.controller->requestBackup(false);
    h.time.advance(250);
    h.timeMachine.toolsMissing = true;
    h.time.advance(4);
    EXPECT_EQ(h.state().lastEvent, "Backup finished (snapshot verification unavailable)");
}

} // namespace
} // namespace norvane
