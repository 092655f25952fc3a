// Where the power comes from, and whether the user wants it saved.
#pragma once

#include <memory>
#include <string>

#include "platform/condition_measurements.h"
#include "platform/linux/bus_link.h"
#include "platform/linux/watched_properties.h"

namespace norvane {

/// Power source: UPower (org.freedesktop.UPower 0.99), else the kernel's list of power supplies. Low Power
/// Mode: the profile "power-saver" of power-profiles-daemon under its old or its new name, else what the
/// desktop portal says (org.freedesktop.portal.PowerProfileMonitor). Main thread.
class DesktopPower {
public:
    /// `portalBus`: the session bus, where this program runs in a sandbox; else null. `powerSupplyFolder`:
    /// /sys/class/power_supply.
    DesktopPower(BusLink& systemBus, BusLink* portalBus, std::string powerSupplyFolder);

    /// What was told last; waits for no service.
    [[nodiscard]] PowerState state();

private:
    [[nodiscard]] std::optional<PowerState> sourceFromUPower();
    [[nodiscard]] bool lowPowerMode();

    WatchedProperties upower_;
    WatchedProperties battery_; // what the desktop shows as one for all batteries
    WatchedProperties profiles_;
    WatchedProperties renamedProfiles_;
    std::unique_ptr<WatchedProperties> portal_;
    const std::string powerSupplyFolder_;
};

} // namespace norvane
