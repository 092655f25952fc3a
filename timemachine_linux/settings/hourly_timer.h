// A backup every hour, by a timer of systemd's manager of the user's services (systemd.timer(5)).
#pragma once

#include <map>
#include <string>

#include "platform/command_runner.h"

namespace norvane {

inline constexpr auto hourlyTimerUnit = "norvane-timemachine.timer";
inline constexpr auto hourlyServiceUnit = "norvane-timemachine.service";

/// The unit file that runs one backup, if backups are still automatic then: of the program `tmutil`, with
/// these environment variables.
[[nodiscard]] std::string hourlyService(const std::string& tmutil,
                                        const std::map<std::string, std::string>& variables);
/// The unit file that starts it.
[[nodiscard]] std::string hourlyTimer();

struct HourlyTimerPlaces {
    std::string systemctl;  ///< Absolute; empty: the system has none.
    std::string unitFolder; ///< Where the user's units are.
    std::string tmutil;
    std::map<std::string, std::string> variables; ///< What the program needs to find the user's folders.
};

/// Of the user of this process.
[[nodiscard]] HourlyTimerPlaces hourlyTimerPlaces(const std::string& tmutil);

/// Every call runs a tool and blocks: background threads only.
class HourlyTimer {
public:
    HourlyTimer(const CommandRunner& runner, HourlyTimerPlaces places);

    enum class State {
        inactive, ///< Also where there is no systemd, or no manager of the user's services.
        active,
        unknown, ///< The manager does not answer.
    };
    [[nodiscard]] State state() const;

    /// Installs and starts it, for this session and the next ones. Returns why not, as the tool put it; then
    /// nothing is left behind, and one that ran goes on. Empty on success.
    [[nodiscard]] std::string start() const;

    /// The opposite. Returns why the timer may still run; empty: it does not.
    [[nodiscard]] std::string stop() const;

private:
    struct Answer {
        std::string trouble; ///< What the tool complained of; empty: none, it did what it was asked.
        bool inTime = true;
    };
    [[nodiscard]] Answer control(const std::vector<std::string>& words) const;
    void removeUnits() const;

    const CommandRunner& runner_;
    const HourlyTimerPlaces places_;
};

} // namespace norvane
