#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "ui/kit/debouncer.h"
#include "ui/settings/settings_tab.h"
#include "ui/settings/tabs/conditions_edit.h"
#include "ui/settings/tabs/log_look.h"
#include "ui/settings/tabs/schedule_edit.h"
#include "ui/texts/status_line.h"

namespace norvane {

namespace {

using enum Weekday;
using Mode = ScheduleEdit::Mode;

TEST(Debouncer, RunsTheLastActionOnce) {
    SimulatedTime time(Instant{});
    std::vector<int> runs;
    {
        Debouncer debouncer(time);
        for (int edit = 1; edit <= 3; ++edit) {
            debouncer.scheduleAfter(0.4, [&runs, edit] { runs.push_back(edit); });
            time.advance(0.39);
        }
        EXPECT_TRUE(runs.empty());
        time.advance(0.01);
        EXPECT_EQ(runs, std::vector{3});
        EXPECT_FALSE(debouncer.pending());
        debouncer.scheduleAfter(0.4, [&] { debouncer.scheduleAfter(0.4, [&runs] { runs.push_back(4); }); });
        time.advance(0.8);
        EXPECT_EQ(runs.back(), 4) << "asked for by the action";
        debouncer.scheduleAfter(0.4, [&runs] { runs.push_back(5); });
    }
    time.advance(1);
    EXPECT_EQ(runs.back(), 4) << "its owner is gone";
}

TEST(SettingsTab, HasExactNames) {
    for (const SettingsTabInfo& info : settingsTabs)
        EXPECT_EQ(settingsTabFrom(rawValue(info.tab)), info.tab);
    for (const char* name : {"Conditions", "", "about ", "3"})
        EXPECT_EQ(settingsTabFrom(name), std::nullopt) << name;
}

TEST(ScheduleEdit, ShowsTheFirstRuleInItsOwnForm) {
    for (const auto& [stored, shown] :
         {std::pair{0.5, 1.0}, {0, 1}, {-7, 1}, {6.5, 7}, {6.4, 6}, {30, 24}, {1e300, 24}}) {
        const ScheduleEdit edit = withRuleOf({{IntervalRule{stored}, DailyTimesRule{}}, {}}, {});
        EXPECT_EQ(edit.mode, Mode::interval);
        EXPECT_EQ(edit.hours, shown) << stored;
    }
    EXPECT_EQ(withRuleOf({}, {}), ScheduleEdit());
    const ScheduleEdit daily = withRuleOf({{DailyTimesRule{{{20, 0}, {9, 30}, {20, 0}}}}, {}}, {});
    EXPECT_EQ(daily.mode, Mode::daily);
    EXPECT_EQ(daily.times, (std::vector<TimeOfDay>{{9, 30}, {20, 0}, {20, 0}}));
    EXPECT_EQ(withRuleOf({{DailyTimesRule{}}, {}}, {}).times, (std::vector<TimeOfDay>{{12, 0}}));
    const TimeOfDay impossible = TimeOfDay::unclamped(25, 70);
    EXPECT_EQ(ruleOf(withRuleOf({{DailyTimesRule{{impossible}}}, {}}, {})),
              ScheduleRule(DailyTimesRule{{impossible}}));
}

TEST(ScheduleEdit, RegroupsSlotsAndRows) {
    const std::vector<WeeklyRow> edited = {
        {{monday, wednesday}, {8, 0}}, {{wednesday}, {7, 0}}, {{}, {10, 0}}};
    const std::vector<WeekdaySlot> slots = {{monday, {{8, 0}}}, {wednesday, {{7, 0}, {8, 0}}}};
    EXPECT_EQ(weekdaySlots(edited), slots);
    const std::vector<WeeklyRow> shown = {{{wednesday}, {7, 0}}, {{monday, wednesday}, {8, 0}}};
    EXPECT_EQ(weeklyRows(slots), shown);
    EXPECT_EQ(weekdaySlots(shown), slots);

    EXPECT_EQ(weeklyRows({{friday, {{9, 0}, {9, 0}}}, {sunday, {{9, 0}}}, {friday, {{6, 0}}}}),
              (std::vector<WeeklyRow>{{{friday}, {6, 0}}, {{friday, sunday}, {9, 0}}}));
    const std::vector<WeeklyRow> initial = {{{monday, wednesday, friday}, {12, 0}}};
    EXPECT_EQ(weeklyRows({}), initial);
    EXPECT_EQ(weeklyRows({{tuesday, {}}}), initial);
    // Two rows of one time and day: both are kept.
    EXPECT_EQ(weekdaySlots({{{sunday}, {9, 0}}, {{sunday}, {9, 0}}}),
              (std::vector<WeekdaySlot>{{sunday, {{9, 0}, {9, 0}}}}));
    EXPECT_TRUE(weekdaySlots({}).empty());
}

TEST(ScheduleEdit, KnowsWhichWindowsCrossMidnight) {
    EXPECT_TRUE(crossesMidnight({{}, {22, 0}, {6, 0}}));
    EXPECT_TRUE(crossesMidnight({{}, {12, 0}, {12, 0}}));
    EXPECT_FALSE(crossesMidnight({{}, {9, 0}, {17, 0}}));
}

TEST(ConditionsEdit, StoresNoneForOff) {
    ConditionsConfig config;
    EXPECT_EQ(busyValue(config), 0);
    EXPECT_FALSE(waitsForDisk(config));
    setBusyValue(config, 0.6);
    setWaitsForDisk(config, true);
    EXPECT_EQ(config.maxLoadPerCore, 0.6);
    EXPECT_EQ(config.requireDestinationPresent, true);
    setBusyValue(config, 0);
    setWaitsForDisk(config, false);
    EXPECT_EQ(config, ConditionsConfig());
    config.requireDestinationPresent = false;
    EXPECT_FALSE(waitsForDisk(config));
}

TEST(ConditionsEdit, KeepsEachApplicationOnce) {
    ConditionsConfig config;
    for (const InstalledApplication& application : {InstalledApplication{"zoom", "Zoom", ""},
                                                    {"", "No id", ""},
                                                    {"obs", "", "obs"},
                                                    {"zoom", "Zoom", "other"},
                                                    {"zoom", "Zoom 2", ""}})
        addApplication(config, application);
    EXPECT_EQ(config.blockedApps,
              (std::vector<BlockedApp>{{"zoom", "Zoom"}, {"obs", "obs"}, {"zoom", "Zoom 2"}}));
    config.blockedApps.push_back({"zoom", "Zoom"}); // as somebody else may have stored it
    removeApplicationAt(config, 0);
    EXPECT_EQ(config.blockedApps, (std::vector<BlockedApp>{{"obs", "obs"}, {"zoom", "Zoom 2"}}));
    removeApplicationAt(config, 2);
    EXPECT_EQ(config.blockedApps.size(), 2U);
}

TEST(LogLook, FollowsTheFirstWordThatCounts) {
    const std::pair<const char*, LogLook> cases[] = {
        {"Backup FINISHED", {"checkmark.circle.fill", Tint::green}},
        {"Finished after a failed try", {"checkmark.circle.fill", Tint::green}},
        {"Backup failed: disk full", {"xmark.octagon.fill", Tint::red}},
        {"Backup never started", {"xmark.octagon.fill", Tint::red}},
        {"Error 5", {"xmark.octagon.fill", Tint::red}},
        {"Backup was missed — catching up", {"exclamationmark.arrow.circlepath", Tint::orange}},
        {"Deferred, scheduled for 9:00", {"hourglass", Tint::secondary}},
        {"Waiting for power", {"hourglass", Tint::secondary}},
        {"Next backup scheduled for 9:00", {"calendar.badge.clock", Tint::secondary}},
        {"Backup requested", {"arrow.triangle.2.circlepath", Tint::secondary}},
        {"Paused until 9:00", {"pause.circle", Tint::secondary}},
        {"Will skip the next", {"pause.circle", Tint::secondary}},
        {"Launched", {"info.circle", Tint::secondary}},
        {"", {"info.circle", Tint::secondary}}};
    for (const auto& [message, look] : cases)
        EXPECT_EQ(lookOf(message), look) << message;
}

TEST(StatusLine, FollowsThePrecedence) {
    const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};
    const auto hours = [now](double count) { return plusSeconds(now, count * 3600); };
    using Dot = Tint;
    // Each state keeps what came before it, so that each shows who wins.
    struct Case {
        std::function<void(ControllerState&)> change;
        StatusLine line;
    };
    ControllerState state;
    for (const Case& c :
         {Case{[](ControllerState&) {}, {Dot::secondary, "No backup scheduled", ""}},
          Case{[&](ControllerState& s) { s.nextFire = hours(3); },
               {Dot::green, "Next backup: T13:00 (in 10800 s)", ""}},
          Case{[&](ControllerState& s) { s.deferredFrom = hours(3); },
               {Dot::green, "Next backup: T13:00 (in 10800 s)", ""}},
          Case{[&](ControllerState& s) { s.deferredFrom = hours(1); },
               {Dot::green, "Next backup: T13:00 (in 10800 s)", "  · deferred by a blackout"}},
          Case{[&](ControllerState& s) { s.nextFire = hours(20); },
               {Dot::green, "Next backup: D2026-03-06 06:00 (in 72000 s)", "  · deferred by a blackout"}},
          Case{[&](ControllerState& s) { s.pausedUntil = hours(1); },
               {Dot::yellow, "Paused until T11:00", ""}},
          Case{[&](ControllerState& s) { s.status.running = true; }, {Dot::accent, "Backing up now…", ""}}}) {
        c.change(state);
        EXPECT_EQ(statusLine(state, now, SimulatedFormats(), UntranslatedText()), c.line) << c.line.text;
    }
}

} // namespace

} // namespace norvane
