// Whether backups are made by themselves. A flag in the preferences rules; the hourly timer acts on it.
#pragma once

#include <optional>

#include "timemachine_linux/files/preferences.h"
#include "timemachine_linux/settings/hourly_timer.h"

namespace norvane {

/// What the flag says, whatever the timer does: off, no backup starts by itself. None: nobody has set it.
[[nodiscard]] std::optional<bool> automaticBackups(const UserDefaultsFile& preferences);

/// Starts or stops the timer, even if the flag says so already, and stores the flag. After a failure
/// both are as they were.
[[nodiscard]] std::optional<Failure> setAutomaticBackups(UserDefaultsFile& preferences,
                                                         const HourlyTimer& timer, bool on);

} // namespace norvane
