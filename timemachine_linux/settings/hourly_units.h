// The unit files of the hourly timer (systemd.timer(5), systemd.service(5)).
#pragma once

#include <map>
#include <string>

namespace norvane {

inline constexpr auto hourlyTimerUnit = "norvane-timemachine.timer";
inline constexpr auto hourlyServiceUnit = "norvane-timemachine.service";

/// The unit file that runs one backup, if backups are still automatic then: of the program `tmutil`, with
/// these environment variables.
[[nodiscard]] std::string hourlyService(const std::string& tmutil,
                                        const std::map<std::string, std::string>& variables);
/// The unit file that starts it.
[[nodiscard]] std::string hourlyTimer();

} // namespace norvane
