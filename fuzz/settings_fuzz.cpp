#include "fuzz/fuzz.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "platform/text/property_list_xml.h"
#include "scheduler_core/settings_store.h"

namespace norvane {

namespace {

/// Reads every setting, writes it back and expects to read the same.
void checkStore(SettingsStore& store) {
    const Schedule schedule = store.schedule();
    store.setSchedule(schedule);
    check(store.schedule() == schedule, "The schedule is kept.");
    const ConditionsConfig conditions = store.conditions();
    store.setConditions(conditions);
    check(store.conditions() == conditions, "The conditions are kept.");
    const auto lastBackup = store.lastBackupDate();
    store.setLastBackupDate(lastBackup);
    check(store.lastBackupDate() == lastBackup, "The last backup is kept.");
    const auto planned = store.plannedFireDate();
    store.setPlannedFireDate(planned);
    check(store.plannedFireDate() == planned, "The planned backup is kept.");
    const std::int64_t grace = store.launchGraceMinutes();
    check(grace >= 1, "The launch grace is at least a minute.");
    store.setLaunchGraceMinutes(grace);
    check(store.launchGraceMinutes() == grace, "The launch grace is kept.");
    const std::int64_t streak = store.failureStreak();
    store.setFailureStreak(streak);
    check(store.failureStreak() == streak, "The failure streak is kept.");
    const bool onboarded = store.onboardingDone();
    store.setOnboardingDone(onboarded);
    check(store.onboardingDone() == onboarded, "The onboarding is kept.");
    const bool accent = store.alwaysBrandAccent();
    store.setAlwaysBrandAccent(accent);
    check(store.alwaysBrandAccent() == accent, "The accent colour is kept.");
}

} // namespace

void fuzz(std::string_view input) {
    const auto list = parsePropertyList(input);
    if (!list || !list->dictionary())
        return;
    SimulatedUserDefaults defaults;
    for (const auto& [key, value] : *list->dictionary())
        defaults.set(key, value);
    SettingsStore store(defaults);
    checkStore(store);
}

} // namespace norvane
