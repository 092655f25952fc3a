#include "scheduler_core/settings_store.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/brand_accent.h"
#include "scheduler_core/conditions_json.h"
#include "scheduler_core/schedule_json.h"

namespace norvane {

namespace {

const std::string scheduleKey = "schedule.v1";
const std::string conditionsKey = "conditions.v1";
const std::string lastBackupDateKey = "lastBackupDate.v1";
const std::string plannedFireDateKey = "plannedFireDate.v1";
const std::string launchGraceMinutesKey = "launchGraceMinutes.v1";
const std::string onboardingDoneKey = "onboardingDone.v1";
const std::string failureStreakKey = "failureStreak.v1";

constexpr std::int64_t defaultLaunchGraceMinutes = 5;

void setData(UserDefaults& defaults, const std::string& key, std::optional<std::string> bytes) {
    if (bytes)
        defaults.set(key, {.value = PropertyListData{std::move(*bytes)}});
}

void setDate(UserDefaults& defaults, const std::string& key, std::optional<Instant> date) {
    if (date)
        defaults.set(key, {.value = *date});
    else
        defaults.remove(key);
}

} // namespace

Schedule SettingsStore::schedule() const {
    if (const auto text = defaults_.data(scheduleKey))
        return decodeSchedule(*text).value.value_or(Schedule::defaultSchedule());
    return Schedule::defaultSchedule();
}

void SettingsStore::setSchedule(const Schedule& schedule) {
    setData(defaults_, scheduleKey, encodeSchedule(schedule));
}

ConditionsConfig SettingsStore::conditions() const {
    if (const auto text = defaults_.data(conditionsKey))
        return decodeConditions(*text).value.value_or(ConditionsConfig::defaultConditions());
    return ConditionsConfig::defaultConditions();
}

void SettingsStore::setConditions(const ConditionsConfig& conditions) {
    setData(defaults_, conditionsKey, encodeConditions(conditions));
}

std::optional<Instant> SettingsStore::lastBackupDate() const { return defaults_.date(lastBackupDateKey); }

void SettingsStore::setLastBackupDate(std::optional<Instant> date) {
    setDate(defaults_, lastBackupDateKey, date);
}

std::optional<Instant> SettingsStore::plannedFireDate() const { return defaults_.date(plannedFireDateKey); }

void SettingsStore::setPlannedFireDate(std::optional<Instant> date) {
    setDate(defaults_, plannedFireDateKey, date);
}

std::int64_t SettingsStore::launchGraceMinutes() const {
    const std::int64_t minutes = defaults_.integer(launchGraceMinutesKey);
    return minutes > 0 ? minutes : defaultLaunchGraceMinutes;
}

void SettingsStore::setLaunchGraceMinutes(std::int64_t minutes) {
    defaults_.set(launchGraceMinutesKey, {.value = std::max<std::int64_t>(minutes, 1)});
}

bool SettingsStore::onboardingDone() const { return defaults_.boolean(onboardingDoneKey); }

void SettingsStore::setOnboardingDone(bool done) { defaults_.set(onboardingDoneKey, {.value = done}); }

std::int64_t SettingsStore::failureStreak() const { return defaults_.integer(failureStreakKey); }

void SettingsStore::setFailureStreak(std::int64_t count) {
    defaults_.set(failureStreakKey, {.value = count});
}

bool SettingsStore::alwaysBrandAccent() const { return norvane::alwaysBrandAccent(defaults_); }

void SettingsStore::setAlwaysBrandAccent(bool always) {
    defaults_.set(alwaysBrandAccentKey, {.value = always});
}

} // namespace norvane
