#include "scheduler_core/settings_store.h"

#include <gtest/gtest.h>
#include <limits>

#include "platform/simulated/simulated_user_defaults.h"

namespace norvane {

namespace {

void expectDefaults(const SettingsStore& store) {
    EXPECT_EQ(store.schedule(), Schedule::defaultSchedule());
    EXPECT_EQ(store.conditions(), ConditionsConfig::defaultConditions());
    EXPECT_EQ(store.lastBackupDate(), std::nullopt);
    EXPECT_EQ(store.plannedFireDate(), std::nullopt);
    EXPECT_EQ(store.launchGraceMinutes(), 5);
    EXPECT_FALSE(store.onboardingDone());
    EXPECT_EQ(store.failureStreak(), 0);
    EXPECT_FALSE(store.alwaysBrandAccent());
}

constexpr const char* keys[] = {"schedule.v1",        "conditions.v1",         "lastBackupDate.v1",
                                "plannedFireDate.v1", "launchGraceMinutes.v1", "onboardingDone.v1",
                                "failureStreak.v1",   "alwaysBrandAccent.v1"};

TEST(SettingsStore, ReadsDefaultsForWhatIsMissingOrUnusable) {
    SimulatedUserDefaults defaults;
    expectDefaults(SettingsStore(defaults));
    const PropertyList unusable[] = {{PropertyListData{"{]"}}, {PropertyList::Array{}}, {std::string("{}")}};
    for (const PropertyList& value : unusable) {
        for (const char* key : keys)
            defaults.set(key, value);
        expectDefaults(SettingsStore(defaults));
        EXPECT_EQ(defaults.object("schedule.v1"), value); // reading leaves it as it was
    }
    defaults.set("lastBackupDate.v1", {.value = 700'000'000.0});
    EXPECT_EQ(SettingsStore(defaults).lastBackupDate(), std::nullopt);
}

TEST(SettingsStore, WritesUnderItsKeysAtOnce) {
    SimulatedUserDefaults defaults;
    SettingsStore writer(defaults);
    const SettingsStore reader(defaults);
    const Schedule schedule{.rules = {DailyTimesRule{{{9, 0}}}}, .blackouts = {}};
    ConditionsConfig conditions;
    conditions.maxLoadPerCore = 0.5;
    const Instant date(std::chrono::microseconds(1'700'000'000'123'456));
    writer.setSchedule(schedule);
    writer.setConditions(conditions);
    writer.setLastBackupDate(date);
    writer.setPlannedFireDate(date + std::chrono::hours(1));
    writer.setLaunchGraceMinutes(10);
    writer.setOnboardingDone(true);
    writer.setFailureStreak(-7);
    writer.setAlwaysBrandAccent(true);
    EXPECT_EQ(reader.schedule(), schedule);
    EXPECT_EQ(reader.conditions(), conditions);
    EXPECT_EQ(reader.lastBackupDate(), date);
    EXPECT_EQ(reader.plannedFireDate(), date + std::chrono::hours(1));
    EXPECT_EQ(reader.launchGraceMinutes(), 10);
    EXPECT_TRUE(reader.onboardingDone());
    EXPECT_EQ(reader.failureStreak(), -7);
    EXPECT_TRUE(reader.alwaysBrandAccent());
    for (const char* key : keys)
        EXPECT_TRUE(defaults.object(key)) << key;
    EXPECT_TRUE(defaults.data("schedule.v1"));

    writer.setLastBackupDate(std::nullopt);
    EXPECT_EQ(defaults.object("lastBackupDate.v1"), std::nullopt);
    writer.setSchedule({.rules = {IntervalRule{std::numeric_limits<double>::infinity()}}, .blackouts = {}});
    EXPECT_EQ(reader.schedule(), schedule); // what cannot be encoded changes nothing
}

TEST(SettingsStore, TheLaunchGraceIsAtLeastAMinute) {
    SimulatedUserDefaults defaults;
    SettingsStore store(defaults);
    for (const std::int64_t minutes : {INT64_MIN, INT64_C(0), INT64_C(1)}) {
        store.setLaunchGraceMinutes(minutes);
        EXPECT_EQ(store.launchGraceMinutes(), 1) << minutes;
    }
    defaults.set("launchGraceMinutes.v1", {.value = std::int64_t{-3}});
    EXPECT_EQ(store.launchGraceMinutes(), 5);
}

} // namespace

} // namespace norvane
