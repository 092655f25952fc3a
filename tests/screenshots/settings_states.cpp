#include "tests/screenshots/settings_states.h"

namespace norvane::screenshots {

namespace {

using enum Weekday;

constexpr double hour = 3600;

UpdaterViewModel updaterOver(SimulatedUpdateService::State& state) {
    state.can = true;
    state.automatic = true;
    return UpdaterViewModel(std::make_unique<SimulatedUpdateService>(state));
}

void showSchedule(SettingsScene& scene, const ScheduleRule& rule) {
    scene.program.controller->setSchedule({{rule}, {}});
    scene.show(SettingsTab::schedule);
}

void showBlackouts(SettingsScene& scene) {
    const WeekdaySet workdays = {monday, tuesday, wednesday, thursday, friday};
    scene.program.controller->setSchedule({{DailyTimesRule{{{12, 30}, {20, 0}}}},
                                           {{workdays, {9, 0}, {17, 30}},
                                            {{friday, saturday}, {22, 0}, {6, 0}},
                                            {{thursday}, {10, 0}, {9, 0}}}}); // until tomorrow
    scene.show(SettingsTab::blackouts);
}

void showConditions(SettingsScene& scene) {
    ConditionsConfig conditions = ConditionsConfig::defaultConditions();
    conditions.deferWhileCameraOrMicInUse = true;
    conditions.maxLoadPerCore = 0.6;
    conditions.requireDestinationPresent = true;
    conditions.blockedApps = {{"com.obsproject.Studio", "OBS Studio"}, {"org.blender.Blender", "Blender"}};
    conditions.minBatteryPercent = 30;
    scene.program.controller->setConditions(conditions);
    scene.show(SettingsTab::conditions);
}

void chooseApps(SettingsScene& scene) {
    scene.machine.applications.installed = {{"org.gnome.Calculator", "Calculator", "org.gnome.Calculator"},
                                            {"firefox-esr", "Firefox ESR", "firefox-esr"},
                                            {"gimp", "GNU Image Manipulation Program", "gimp"},
                                            {"org.kde.kdenlive", "Kdenlive", "kdenlive"},
                                            {"com.obsproject.Studio", "OBS Studio", "com.obsproject.Studio"},
                                            {"us.zoom.Zoom", "Zoom", "us.zoom.Zoom"},
                                            {"org.kde.dolphin", "Dolphin", "system-file-manager"},
                                            {"org.kde.kate", "Kate", "kate"}};
    ApplicationChooser& chooser = *scene.model().conditions()->chooser();
    chooser.begin();
    chooser.toggle("com.obsproject.Studio");
    chooser.toggle("gimp");
}

void showActivity(SettingsScene& scene) {
    for (const char* line : {"Launched v1.0 (pid 4711)", "Next backup scheduled for 12:30",
                             "Backup was missed while not running — catching up",
                             "Waiting (running on battery power, camera in use) — next check in 5 min",
                             "Backup requested", "Backup started",
                             "Backup failed: The backup disk is full and the oldest backups could not be "
                             "deleted, so nothing was copied",
                             "Paused until tomorrow", "Backup finished: 12.6 GB in 14 min"}) {
        scene.machine.time.advance(0.2 * hour);
        scene.program.eventLog.log(line);
    }
    scene.machine.logFile.text.erase(0, scene.machine.logFile.text.find("——— Launched v1.0 (pid 4711) ———"));
    scene.show(SettingsTab::activity);
}

} // namespace

SettingsScene::SettingsScene()
    : machine(std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9}),
      program(machine, machine.timeMachine, machine.defaults), updater_(updaterOver(updates_)),
      model_({*[this] {
                  program.formats = &formats;
                  program.store.setSchedule({{DailyTimesRule{{{12, 30}, {20, 0}}}}, {}});
                  program.store.setLastBackupDate(plusSeconds(machine.time.now(), -2 * hour));
                  program.start();
                  machine.time.advance(0.2 * hour);
                  return program.controller.get();
              }(),
              machine.time, machine.time, machine.time, formats, machine.texts, machine.defaults,
              machine.loginItem, updater_, machine.applications, machine.logFile, machine.workspace},
             {"1.0", "https://norvane.example", "updates.norvane.example", "/Norvane.log"}, {}) {}

void SettingsScene::show(SettingsTab tab) {
    model_.select(tab);
    model_.opened();
    machine.time.advance(1);
}

const std::vector<SettingsState>& settingsStates() {
    static const std::vector<SettingsState> states = {
        {"general", [](SettingsScene& s) { s.show(SettingsTab::general); }},
        {"general-problem",
         [](SettingsScene& s) {
             s.machine.loginItem.error = "The folder ~/.config/autostart cannot be written to";
             s.show(SettingsTab::general);
             s.model().general()->setLaunchAtLogin(true);
             s.model().general()->setLanguage("fr-CA");
         }},
        {"general-bottom", [](SettingsScene& s) { s.show(SettingsTab::general); }, 1},
        {"schedule-interval", [](SettingsScene& s) { showSchedule(s, IntervalRule{6}); }},
        {"schedule-daily",
         [](SettingsScene& s) {
             showSchedule(s, DailyTimesRule{{{12, 30}, {20, 0}}});
         }},
        {"schedule-weekly",
         [](SettingsScene& s) {
             showSchedule(s, WeekdayTimesRule{weekdaySlots({{{monday, wednesday, friday}, {8, 15}},
                                                            {{tuesday, thursday}, {12, 0}},
                                                            {{saturday, sunday}, {21, 30}}})});
         }},
        {"blackouts", showBlackouts},
        {"blackouts-middle", showBlackouts, 0.5},
        {"conditions", showConditions},
        {"conditions-middle", showConditions, 0.5},
        {"conditions-bottom", showConditions, 1},
        {"conditions-chooser", showConditions, 0, chooseApps},
        {"activity", showActivity},
        {"activity-bottom", showActivity, 1},
        {"activity-empty",
         [](SettingsScene& s) {
             s.machine.logFile.text.clear();
             s.show(SettingsTab::activity);
         }},
        {"about", [](SettingsScene& s) { s.show(SettingsTab::about); }},
    };
    return states;
}

void scrollTo(QQuickItem& item, double share) {
    const double hidden = item.property("contentHeight").toDouble() - item.height();
    if (item.inherits("QQuickFlickable") && item.isVisible() && hidden > 0)
        item.setProperty("contentY", share * hidden);
    for (QQuickItem* child : item.childItems())
        scrollTo(*child, share);
}

} // namespace norvane::screenshots
