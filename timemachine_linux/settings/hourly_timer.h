// A backup every hour, by a timer of systemd's manager of the user's services (systemd.timer(5)).
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/command_runner.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

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

    /// Installs and starts it, for this session and the next ones. A failure leaves nothing behind, and one
    /// that ran goes on.
    [[nodiscard]] std::optional<Failure> start() const;

    /// The opposite. After a failure the timer may still run.
    [[nodiscard]] std::optional<Failure> stop() const;

private:
    /// Runs systemctl; its failure is what that said. ETIMEDOUT: it said nothing in time.
    [[nodiscard]] std::optional<Failure> control(const std::vector<std::string>& words) const;
    void removeUnits() const;

    const CommandRunner& runner_;
    const HourlyTimerPlaces places_;
};

} // namespace norvane
