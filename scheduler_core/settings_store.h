// The program's persistent settings and scheduling state.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/time/instant.h"
#include "platform/user_defaults.h"
#include "scheduler_core/conditions_config.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// Typed access to the stored settings. Keeps no copy: every call goes to the store, so that objects over the
/// same store see each other's changes. As thread-safe as the store; reading, changing and writing back is
/// not atomic. Reports no error: what is missing or unusable reads as the default, and stays stored until
/// written.
class SettingsStore {
public:
    explicit SettingsStore(UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] Schedule schedule() const;
    void setSchedule(const Schedule& schedule);

    [[nodiscard]] ConditionsConfig conditions() const;
    void setConditions(const ConditionsConfig& conditions);

    /// When the last successful backup ended. Setting none forgets it.
    [[nodiscard]] std::optional<Instant> lastBackupDate() const;
    void setLastBackupDate(std::optional<Instant> date);

    /// For when the next scheduled backup was last planned. Setting none forgets it.
    [[nodiscard]] std::optional<Instant> plannedFireDate() const;
    void setPlannedFireDate(std::optional<Instant> date);

    /// Minutes after the program's start without scheduled backups: at least 1, by default 5.
    [[nodiscard]] std::int64_t launchGraceMinutes() const;
    void setLaunchGraceMinutes(std::int64_t minutes);

    [[nodiscard]] bool onboardingDone() const;
    void setOnboardingDone(bool done);

    /// The number of backups that failed in a row.
    [[nodiscard]] std::int64_t failureStreak() const;
    void setFailureStreak(std::int64_t count);

    /// Whether to use the program's own accent colour always.
    [[nodiscard]] bool alwaysBrandAccent() const;
    void setAlwaysBrandAccent(bool always);

private:
    UserDefaults& defaults_;
};

} // namespace norvane
