#include "ui/panel/panel_content.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "ui/texts/schedule_summary.h"

namespace norvane {

namespace {

const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};
Instant hours(double count) { return plusSeconds(now, count * 3600); }

PanelContent contentOf(const ControllerState& state) {
    return panelContent(state, now, SimulatedFormats(), UntranslatedText());
}

TEST(PanelContent, WhatIsNotSeenPassingIsToldInBegunMinutes) {
    ControllerState state;
    state.nextFire = plusSeconds(now, 200);
    for (const auto& [passed, told] : {std::pair{0, "240 s"}, {19, "240 s"}, {20, "180 s"}, {199, "60 s"}})
        EXPECT_EQ(panelContent(state, plusSeconds(now, passed), SimulatedFormats(), UntranslatedText(),
                               TimeGrain::minute)
                      .subtitle,
                  QString("Next backup in ") + told + "  (T10:03)");
}

TEST(PanelContent, TheHeaderFollowsThePrecedence) {
    // Each state keeps what came before it, so that each shows who wins.
    struct Case {
        void (*change)(ControllerState&);
        const char* symbol;
        Tint tint;
        const char* title;
        const char* subtitle;
    };
    ControllerState state;
    for (const Case& c : {
             Case{[](ControllerState&) {}, "moon.zzz", Tint::secondary, "Nothing Scheduled",
                  "No rules produce an upcoming backup"},
             Case{[](ControllerState& s) { s.nextFire = hours(19); }, "checkmark", Tint::green, "On Schedule",
                  "Next backup in 68400 s  (T05:00)"},
             Case{[](ControllerState& s) { s.nextFire = hours(21); }, "checkmark", Tint::green, "On Schedule",
                  "Next backup in 75600 s  (D2026-03-06 07:00)"},
             Case{[](ControllerState& s) { s.pausedUntil = hours(1); }, "pause.fill", Tint::yellow, "Paused",
                  "Until T11:00 — resumes automatically"},
             Case{[](ControllerState& s) {
                      s.deferral = DeferralInfo{
                          {"running on battery power", "camera in use"}, now, hours(4), hours(0.1)};
                  },
                  "hourglass", Tint::orange, "Waiting",
                  "Running on battery power, camera in use — next check 360 s"},
             Case{[](ControllerState& s) { s.deferral->reasons.clear(); }, "hourglass", Tint::orange,
                  "Waiting", " — next check 360 s"},
             Case{[](ControllerState& s) { s.health = BackupHealth::stale; }, "exclamationmark.shield.fill",
                  Tint::orange, "Backups need attention", " — next check 360 s"},
             Case{[](ControllerState& s) { s.health = BackupHealth::critical; }, "xmark.shield.fill",
                  Tint::red, "Backups are failing", " — next check 360 s"},
             Case{[](ControllerState& s) { s.status.running = true; }, "arrow.triangle.2.circlepath",
                  Tint::accent, "Backing Up…", "In progress"},
             Case{[](ControllerState& s) { s.status.phase = "ThinningÄltereBackups"; },
                  "arrow.triangle.2.circlepath", Tint::accent, "Backing Up…", "Thinning Ältere Backups"},
         }) {
        c.change(state);
        const PanelContent content = contentOf(state);
        EXPECT_EQ(content.symbol, c.symbol);
        EXPECT_EQ(content.tint, c.tint);
        EXPECT_EQ(content.title, c.title);
        EXPECT_EQ(content.subtitle, c.subtitle);
    }
}

TEST(PanelContent, ProgressIsTheBestThatIsKnown) {
    ControllerState state;
    state.status.running = true;
    EXPECT_EQ(contentOf(state).progress, -1);
    EXPECT_EQ(contentOf(state).progressText, "");

    state.status.percent = 0.427;
    EXPECT_EQ(contentOf(state).progress, 0.427);
    EXPECT_EQ(contentOf(state).progressText, "42 %");

    state.status.progress = BackupProgress{300, 200, 0, 0, 290.0};
    EXPECT_EQ(contentOf(state).progress, 1.0); // more copied than announced
    EXPECT_EQ(contentOf(state).progressText, "300 bytes copied · 100 %");
    EXPECT_EQ(contentOf(state).timeLeft, "about ~290 s left");

    state.status.fractionOfProgressBar = 0.25;
    EXPECT_EQ(contentOf(state).progressText, "300 bytes copied · 25 %");

    state.stalled = true;
    EXPECT_EQ(contentOf(state).timeLeft, "");
    state.status.running = false;
    EXPECT_EQ(contentOf(state).progressText, "");
}

TEST(PanelContent, QuittingIsExplained) {
    ControllerState state;
    EXPECT_TRUE(quitMessage(state, UntranslatedText()).startsWith("Scheduled backups stop while"));
    state.autoBackupOn = true;
    EXPECT_TRUE(quitMessage(state, UntranslatedText()).startsWith("Apple's automatic backups are turned on"));
}

TEST(ScheduleSummary, DescribesTheFirstRule) {
    const std::pair<std::vector<ScheduleRule>, const char*> cases[] = {
        {{}, "No schedule"},
        {{IntervalRule{1}, IntervalRule{4}}, "Every hour"},
        {{IntervalRule{24}}, "Every 24 hours"},
        {{IntervalRule{1.5}}, "Every 1.5 hours"},
        {{DailyTimesRule{}}, "No times set"},
        {{DailyTimesRule{{{14, 30}, {9, 5}, TimeOfDay::unclamped(8, 99)}}}, "Daily at 8:99, 9:05, 14:30"},
        {{WeekdayTimesRule{{{Weekday::monday, {}}}}}, "No times set"},
        {{WeekdayTimesRule{
             {{Weekday::monday, {{9, 0}, {12, 0}}}, {Weekday::friday, {{9, 0}, {10, 0}, {11, 0}}}}}},
         "Weekly · 5 backups/week"},
    };
    for (const auto& [rules, summary] : cases)
        EXPECT_EQ(scheduleSummary(Schedule{rules, {}}, UntranslatedText()), summary);
}

} // namespace

} // namespace norvane
