#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace norvane {

namespace {

ConditionsConfig onlyOnPower() {
    ConditionsConfig conditions = ConditionsConfig::defaultConditions();
    conditions.requireAC = true;
    conditions.recheckMinutes = 15;
    return conditions;
}

TEST(Firing, AScheduledBackupRunsFromPlanToPlan) {
    ControllerHarness h;
    h.startSettled();
    h.time.advanceTo(minute(255));
    EXPECT_EQ(h.loggedMessages(),
              (std::vector<std::string>{"Scheduled backup requested", "Backup started", "Verifying backup…",
                                        "Backup finished — snapshot verified",
                                        "Next backup scheduled for 2026-03-05 18:05:00 +0000"}));
    EXPECT_EQ(h.state().lastEvent, "Backup finished — snapshot verified");
    EXPECT_TRUE(h.notifications.posted.empty()) << "silent while all is well";
}

TEST(Deferral, WaitsWhileConditionsForbidAndRunsWhenTheyAllow) {
    ControllerHarness h;
    h.store.setConditions(onlyOnPower());
    h.measurements.power.onAC = false;
    h.startSettled();
    h.time.advanceTo(minute(241));
    ASSERT_TRUE(h.state().deferral);
    EXPECT_EQ(*h.state().deferral,
              (DeferralInfo{{"running on battery power"}, minute(240), minute(480), minute(255)}));
    EXPECT_EQ(h.state().lastEvent, "Waiting running on battery power");
    EXPECT_EQ(h.state().nextFire, minute(240)) << "the instant that fired";
    h.time.advanceTo(minute(256));
    EXPECT_EQ(h.state().deferral->originalDue, minute(240)) << "kept from check to check";
    EXPECT_EQ(h.state().deferral->nextCheck, minute(270));
    h.measurements.power.onAC = true;
    h.time.advanceTo(minute(271));
    EXPECT_FALSE(h.state().deferral);
    EXPECT_TRUE(h.logged("Scheduled backup requested"));
}

TEST(Deferral, IsForcedWhenTheWaitIsOverWithTheLastCheckExactlyThen) {
    ControllerHarness h;
    ConditionsConfig conditions = onlyOnPower();
    conditions.maxDeferralHours = 0.9;
    h.store.setConditions(conditions);
    h.measurements.power.onAC = false;
    h.startSettled();
    h.time.advanceTo(minute(240 + 46));
    EXPECT_EQ(h.state().deferral->nextCheck, minute(240 + 54));
    h.time.advanceTo(minute(240 + 53.9));
    EXPECT_FALSE(h.logged("Scheduled backup requested"));
    h.time.advanceTo(minute(240 + 54.1));
    EXPECT_TRUE(h.logged("Max deferral reached (0h) — backing up despite: running on battery power"));
    EXPECT_TRUE(h.logged("Scheduled backup requested"));
}

TEST(Deferral, EndsWithEachCommandThatReplacesIt) {
    struct Case {
        const char* what;
        std::function<void(BackupController&)> command;
        const char* event;
    };
    const Case cases[] = {
        {"dismiss", [](auto& c) { c.dismissDeferral(); }, "Deferred backup dismissed"},
        {"pause", [](auto& c) { c.pause(minute(600)); }, "Paused until D2026-03-05 20:00"},
        {"skip", [](auto& c) { c.skipNext(); }, "Skipping the T14:00 backup"},
        {"manual", [](auto& c) { c.requestBackup(false); }, "Manual backup requested"},
        {"new schedule",
         [](auto& c) {
             c.setSchedule({{IntervalRule{2}}, {}});
         },
         "Waiting running on battery power"},
    };
    for (const Case& c : cases) {
        ControllerHarness h;
        h.store.setConditions(onlyOnPower());
        h.measurements.power.onAC = false;
        h.startSettled();
        h.time.advanceTo(minute(241));
        ASSERT_TRUE(h.state().deferral) << c.what;
        c.command(*h.controller);
        EXPECT_FALSE(h.state().deferral) << c.what;
        EXPECT_EQ(h.state().lastEvent, c.event) << c.what;
        h.time.advanceTo(minute(300));
        EXPECT_FALSE(h.state().pausedUntil && h.state().deferral) << "nothing looks again in a pause";
    }
}

TEST(Deferral, NewConditionsAreTriedAtOnceEqualOnesAreNot) {
    ControllerHarness h;
    h.store.setConditions(onlyOnPower());
    h.measurements.power.onAC = false;
    h.startSettled();
    h.time.advanceTo(minute(241));
    h.controller->setConditions(onlyOnPower());
    h.controller->setSchedule(Schedule::defaultSchedule());
    EXPECT_TRUE(h.state().deferral);
    EXPECT_EQ(h.countLogged("Waiting running on battery power"), 1);
    ConditionsConfig lenient = onlyOnPower();
    lenient.requireAC = false;
    h.controller->setConditions(lenient);
    EXPECT_TRUE(h.logged("Scheduled backup requested"));
    EXPECT_EQ(h.store.conditions(), lenient);
}

TEST(Commands, PauseSkipAndResumeMoveThePlan) {
    ControllerHarness h;
    h.startSettled();
    h.controller->pauseUntilTomorrow();
    EXPECT_EQ(h.state().pausedUntil, minute(14 * 60)) << "the coming midnight";
    EXPECT_EQ(h.state().nextFire, minute(14 * 60));
    h.controller->resume();
    EXPECT_EQ(h.state().lastEvent, "Schedule resumed");
    EXPECT_EQ(h.state().nextFire, minute(240));
    h.controller->skipNext();
    EXPECT_TRUE(h.state().skipArmed);
    EXPECT_EQ(h.state().nextFire, minute(480));
    h.time.advanceTo(minute(479));
    EXPECT_EQ(h.timeMachine.snapshotDates.size(), 0U);
    h.systemEvents.handlers->clockChanged();
    EXPECT_FALSE(h.state().skipArmed) << "over by now, and for good";
    h.time.setWallClock(minute(230));
    h.systemEvents.handlers->clockChanged();
    EXPECT_EQ(h.state().nextFire, minute(240));
    h.controller->pause(minute(231));
    h.time.advance(60);
    EXPECT_FALSE(h.state().pausedUntil);
    EXPECT_EQ(h.state().lastEvent, "Pause ended");
}

TEST(Commands, TheLogTellsAPlanOnlyWhenItChanges) {
    ControllerHarness h;
    h.startSettled();
    h.controller->setSchedule({{}, {}});
    h.controller->setSchedule({{}, {{{Weekday::monday}, TimeOfDay(1, 0), TimeOfDay(2, 0)}}});
    EXPECT_FALSE(h.store.plannedFireDate());
    EXPECT_EQ(h.store.schedule(), h.state().schedule);
    h.controller->setConditions(onlyOnPower());
    h.controller->skipNext();
    EXPECT_FALSE(h.state().skipArmed) << "there is nothing to skip";
    h.controller->dismissDeferral();
    h.time.advance(5 * 3600);
    EXPECT_EQ(h.loggedMessages(), std::vector<std::string>{"No backup scheduled"});
}

TEST(Settings, StrangeStoredNumbersBreakNothing) {
    ControllerHarness h;
    ConditionsConfig conditions = onlyOnPower();
    conditions.maxDeferralHours = 1e300;
    conditions.recheckMinutes = INT64_MIN;
    h.store.setConditions(conditions);
    h.defaults.set("launchGraceMinutes.v1", {INT64_MAX / 2});
    h.store.setFailureStreak(INT64_MAX);
    h.measurements.power.onAC = false;
    h.start();
    h.time.advance(60);
    h.controller->requestBackup(true);
    ASSERT_TRUE(h.state().deferral);
    EXPECT_EQ(h.state().deferral->forceAt, distantFuture);
    h.time.advance(600);
    EXPECT_GT(h.countLogged("Waiting running on battery power"), 100)
        << "checked every second, never in a tight loop";
    h.timeMachine.toolsMissing = true;
    h.controller->requestBackup(false);
    h.time.advance(1);
    EXPECT_EQ(h.store.failureStreak(), INT64_MAX);
}

} // namespace

} // namespace norvane
