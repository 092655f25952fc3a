#include "ui/settings/settings_view_model.h"

#include <gtest/gtest.h>

#include "tests/support/simulated_program.h"

namespace norvane {

namespace {

using enum Weekday;

struct Settings {
    Settings() { program.start(); }

    SettingsViewModel& model() {
        if (!made)
            made = std::make_unique<SettingsViewModel>(
                SettingsServices{*program.controller, machine.time, machine.time, machine.time,
                                 machine.formats, machine.texts, machine.defaults, machine.loginItem, updater,
                                 machine.applications, machine.logFile, machine.workspace},
                ProgramFacts{"", "https://norvane.example", updateHost, "/log/Norvane.log"},
                SettingsActions{
                    {[this] { launched = machine.time.now(); }, [this] { quit = machine.time.now(); }},
                    [] {}});
        return *made;
    }
    SettingsViewModel& openOn(SettingsTab tab) {
        model().select(tab);
        model().opened();
        return model();
    }
    static QVariant value(QAbstractItemModel* rows, int row, const char* role) {
        return rows->data(rows->index(row, 0), rows->roleNames().key(role));
    }

    SimulatedMachine machine{std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9}};
    SimulatedProgram program{machine, machine.timeMachine, machine.defaults};
    SimulatedUpdateService::State updates;
    UpdaterViewModel updater{std::make_unique<SimulatedUpdateService>(updates)};
    std::string updateHost = "updates.example";
    std::optional<Instant> launched;
    std::optional<Instant> quit;
    std::unique_ptr<SettingsViewModel> made;
};

TEST(ScheduleSettings, SavesTheShownFormOnceAfterTheLoad) {
    Settings s;
    const std::vector<BlackoutWindow> blackouts = {{{monday}, {22, 0}, {6, 0}}};
    s.program.controller->setSchedule({{IntervalRule{6.5}, DailyTimesRule{{{9, 0}}}}, blackouts});
    ScheduleSettings& tab = *s.openOn(SettingsTab::schedule).schedule();
    EXPECT_EQ(tab.hours(), 7);
    s.machine.time.advance(0.39);
    EXPECT_EQ(s.program.store.schedule().rules.size(), 2U);
    s.machine.time.advance(0.01);
    EXPECT_EQ(s.program.store.schedule(), (Schedule{{IntervalRule{7}}, blackouts}));
}

TEST(ScheduleSettings, AnEmptyDailyListBecomesNoonAndNoRuleStaysNone) {
    Settings s;
    s.program.controller->setSchedule({{DailyTimesRule{}}, {}});
    ScheduleSettings& tab = *s.openOn(SettingsTab::schedule).schedule();
    EXPECT_EQ(Settings::value(tab.times(), 0, "time"), 720);
    s.machine.time.advance(0.4);
    EXPECT_EQ(s.program.state().schedule.rules, (std::vector<ScheduleRule>{DailyTimesRule{{{12, 0}}}}));

    Settings empty;
    empty.program.controller->setSchedule({});
    (void)empty.openOn(SettingsTab::schedule);
    empty.machine.time.advance(1);
    EXPECT_TRUE(empty.program.state().schedule.rules.empty());
}

TEST(ScheduleSettings, ABurstOfEditsIsOneSave) {
    Settings s;
    ScheduleSettings& tab = *s.openOn(SettingsTab::schedule).schedule();
    int changes = 0;
    const auto subscription =
        s.program.controller->subscribe([&, last = s.program.state().schedule]() mutable {
            changes += s.program.state().schedule != last;
            last = s.program.state().schedule;
        });
    tab.setMode(1);
    tab.addTime();
    tab.setTime(0, 20 * 60 + 15);
    tab.setTime(5, 0); // no such row
    s.machine.time.advance(0.3);
    tab.setMode(2);
    tab.addRow();
    tab.setRowDays(0, 0);
    tab.setRowTime(1, 61);
    tab.removeRow(7);
    s.machine.time.advance(0.3);
    tab.setMode(1);
    // The tab is left and comes back before the edit has settled: it is not lost.
    s.model().select(SettingsTab::general);
    s.model().select(SettingsTab::schedule);
    EXPECT_EQ(changes, 0);
    s.machine.time.advance(0.4);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(s.program.state().schedule.rules,
              (std::vector<ScheduleRule>{DailyTimesRule{{{9, 0}, {20, 15}}}}));
    tab.setMode(2);
    s.machine.time.advance(0.4);
    const auto* weekly = std::get_if<WeekdayTimesRule>(&s.program.state().schedule.rules.at(0));
    ASSERT_TRUE(weekly);
    EXPECT_EQ(weekly->slots.size(), 7U);
    EXPECT_EQ(weekly->slots.at(0), (WeekdaySlot{sunday, {{1, 1}}}));
}

TEST(BlackoutSettings, ChangesOnlyItsPart) {
    Settings s;
    const std::vector<ScheduleRule> rules = {IntervalRule{0.5}, DailyTimesRule{}};
    const BlackoutWindow strange{{monday}, TimeOfDay::unclamped(25, 70), {6, 0}};
    s.program.controller->setSchedule({rules, {strange, {{friday}, {12, 0}, {12, 0}}}});
    BlackoutSettings& tab = *s.openOn(SettingsTab::blackouts).blackouts();
    EXPECT_EQ(Settings::value(tab.windows(), 0, "start"), 23 * 60 + 59);
    EXPECT_EQ(Settings::value(tab.windows(), 1, "crossesMidnight"), true);
    tab.add();
    tab.setEnd(1, 13 * 60);
    tab.setDays(1, 0b1000001);
    tab.setStart(9, 0);
    tab.remove(-1);
    EXPECT_EQ(Settings::value(tab.windows(), 1, "crossesMidnight"), false);
    s.machine.time.advance(0.4);
    const BlackoutWindow added{
        WeekdaySet{sunday, monday, tuesday, wednesday, thursday, friday, saturday}, {9, 0}, {17, 0}};
    EXPECT_EQ(s.program.state().schedule,
              (Schedule{rules, {strange, {{sunday, saturday}, {12, 0}, {13, 0}}, added}}));
    tab.remove(0);
    s.machine.time.advance(0.4);
    EXPECT_EQ(s.program.state().schedule.blackouts.size(), 2U);
}

TEST(ConditionsSettings, KeepsWhatWasNotEdited) {
    Settings s;
    ConditionsConfig config = ConditionsConfig::defaultConditions();
    config.maxLoadPerCore = 0.45; // no choice of the picker
    config.recheckMinutes = 7;
    config.maxDeferralHours = 99.5;
    s.program.controller->setConditions(config);
    s.machine.applications.installed = {
        {"zoom", "Zoom", ""}, {"obs", "OBS Studio", ""}, {"gimp", "gimp", ""}};
    ConditionsSettings& tab = *s.openOn(SettingsTab::conditions).conditions();
    s.machine.time.advance(0.4);
    EXPECT_EQ(s.program.state().conditions, config);

    ApplicationChooser& chooser = *tab.chooser();
    chooser.begin();
    EXPECT_EQ(Settings::value(chooser.found(), 0, "name").toString().toStdString(), "gimp");
    chooser.setSearch("o");
    EXPECT_EQ(chooser.found()->rowCount(), 2);
    chooser.toggle("zoom");
    chooser.setSearch("STUDIO");
    chooser.toggle("obs");
    EXPECT_EQ(chooser.chosenCount(), 2);
    chooser.accept();
    chooser.begin();
    chooser.toggle("gimp");
    chooser.cancel();
    tab.setMaxDeferralHours(8);
    tab.setMaxDeferralHours(4);
    tab.setRequireAC(true);
    s.machine.time.advance(0.4);
    config.maxDeferralHours = 4;
    config.requireAC = true;
    config.blockedApps = {{"obs", "OBS Studio"}, {"zoom", "Zoom"}};
    EXPECT_EQ(s.program.store.conditions(), config);
    tab.removeApp(0);
    EXPECT_EQ(tab.blockedApps()->rowCount(), 1);
}

TEST(ActivityList, ShowsTheLogAsItGrows) {
    Settings s;
    s.machine.logFile.text.clear();
    ActivityList& tab = *s.openOn(SettingsTab::activity).activity();
    EXPECT_FALSE(tab.loaded());
    s.machine.time.settle();
    EXPECT_TRUE(tab.loaded());
    EXPECT_EQ(tab.entries()->rowCount(), 0);
    s.machine.logFile.text = "2026-03-01 09:15:02 +0100 Backup finished\n" + std::string(5000, 'x') + "\n";
    s.machine.time.advance(5);
    EXPECT_EQ(tab.countText(), "2 events");
    EXPECT_EQ(Settings::value(tab.entries(), 0, "message").toString().size(), 501);
    EXPECT_EQ(Settings::value(tab.entries(), 1, "date"), "D2026-03-01 08:15:02");
    EXPECT_EQ(Settings::value(tab.entries(), 1, "symbol"), "checkmark.circle.fill");
    s.machine.logFile.text += "\xFF";
    s.machine.time.advance(5);
    EXPECT_EQ(tab.entries()->rowCount(), 0);
    s.model().select(SettingsTab::about);
    s.machine.logFile.text = "hello";
    s.machine.time.advance(60);
    EXPECT_EQ(tab.entries()->rowCount(), 0) << "nobody looks";
    s.model().openLogFile();
    EXPECT_EQ(s.machine.workspace.revealed, std::vector<std::string>{"/log/Norvane.log"});
}

TEST(GeneralSettings, EveryChangeCountsAtOnce) {
    Settings s;
    GeneralSettings& tab = *s.openOn(SettingsTab::general).general();
    tab.setLaunchGrace(15);
    EXPECT_EQ(s.program.store.launchGraceMinutes(), 15);
    const auto epoch = s.program.state().accentEpoch;
    tab.setAlwaysBrand(true);
    EXPECT_TRUE(s.program.store.alwaysBrandAccent());
    EXPECT_EQ(s.program.state().accentEpoch, epoch + 1);
    tab.setAutomaticallyChecks(true);
    EXPECT_TRUE(s.updates.automatic);
    EXPECT_EQ(
        tab.updatesFooter(),
        "Norvane checks updates.example for new versions. No usage data or system information is sent.");
    EXPECT_EQ(s.model().version(), "dev");
}

TEST(GeneralSettings, ABuildWithoutAFeedPromisesNoChecks) {
    for (const char* host : {"updates.example", ""}) {
        Settings s;
        s.updateHost = host;
        GeneralSettings& tab = *s.openOn(SettingsTab::general).general();
        tab.setAutomaticallyChecks(true);
        EXPECT_EQ(tab.looksForUpdates(), !s.updateHost.empty());
        EXPECT_EQ(tab.automaticallyChecks(), !s.updateHost.empty());
    }
}

TEST(GeneralSettings, ALanguageNeedsARelaunch) {
    Settings s;
    GeneralSettings& tab = *s.openOn(SettingsTab::general).general();
    EXPECT_EQ(tab.language(), "system");
    EXPECT_FALSE(tab.languageChanged());
    tab.setLanguage("de");
    EXPECT_EQ(*s.machine.defaults.object("AppleLanguages"), PropertyList({PropertyList::Array{{"de"}}}));
    tab.setLanguage("system");
    EXPECT_FALSE(s.machine.defaults.object("AppleLanguages"));
    EXPECT_TRUE(tab.languageChanged());
    tab.relaunch();
    s.machine.time.advance(1);
    ASSERT_TRUE(s.launched && s.quit);
    EXPECT_DOUBLE_EQ(secondsBetween(*s.launched, *s.quit), 0.3);
}

TEST(SettingsViewModel, WeeksBeginWhereTheLocaleSays) {
    Settings s;
    QString week;
    for (const QVariant& day : s.model().weekdays())
        week += day.toMap()["symbol"].toString();
    EXPECT_EQ(week, "2345671");
    EXPECT_EQ(s.model().weekdays().last().toMap()["bit"], 0);
}

TEST(SettingsViewModel, TheStatusFollowsTimeAndController) {
    Settings s;
    SettingsViewModel& model = s.openOn(SettingsTab::about);
    const QString before = model.status();
    EXPECT_TRUE(before.startsWith("Next backup: ")) << before.toStdString();
    s.machine.time.advance(1);
    EXPECT_NE(model.status(), before);
    s.program.controller->pause(plusSeconds(s.machine.time.now(), 3600));
    s.machine.time.settle();
    EXPECT_TRUE(model.status().startsWith("Paused until ")) << model.status().toStdString();
    model.setSelectedTab(6);
    model.setSelectedTab(-1);
    EXPECT_EQ(model.selectedTab(), 5);
}

TEST(RowList, ChangesAsLittleAsPossible) {
    RowList list({"n"});
    QStringList signalled;
    const auto note = [&](const char* what) {
        return [&signalled, what](const QModelIndex&, int first, int last) {
            signalled << QString("%1 %2-%3").arg(what).arg(first).arg(last);
        };
    };
    QObject::connect(&list, &RowList::rowsInserted, note("inserted"));
    QObject::connect(&list, &RowList::rowsRemoved, note("removed"));
    QObject::connect(&list, &RowList::dataChanged, [&](const QModelIndex& first, const QModelIndex& last) {
        signalled << QString("changed %1-%2").arg(first.row()).arg(last.row());
    });
    const std::tuple<QList<int>, QStringList> cases[] = {{{1, 2, 3}, {"inserted 0-2"}},
                                                         {{1, 2, 3}, {}},
                                                         {{1, 2, 3, 4}, {"inserted 3-3"}},
                                                         {{1, 3, 4}, {"removed 1-1"}},
                                                         {{1, 5, 4}, {"changed 1-1"}},
                                                         {{0, 1, 5, 4}, {"inserted 0-0"}},
                                                         {{9, 9}, {"removed 2-3", "changed 0-1"}},
                                                         {{}, {"removed 0-1"}}};
    for (const auto& [numbers, expected] : cases) {
        signalled.clear();
        QList<QVariantMap> rows;
        for (const int number : numbers)
            rows.append({{"n", number}});
        list.set(rows);
        EXPECT_EQ(signalled, expected) << signalled.join(", ").toStdString();
        EXPECT_EQ(list.rowCount(), numbers.size());
    }
}

} // namespace

} // namespace norvane
