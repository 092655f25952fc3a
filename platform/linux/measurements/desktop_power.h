// Where the power comes from, and whether the user wants it saved.
#pragma once

#include <string>

#include "platform/condition_measurements.h"
#include "platform/linux/bus/bus_link.h"

namespace norvane {

/// Power source: UPower (org.freedesktop.UPower 0.99), else the kernel's list of power supplies. Low Power
/// Mode: the profile "power-saver" of power-profiles-daemon under its old or its new name.
/// Main thread.
class DesktopPower {
public:
    /// `powerSupplyFolder`: /sys/class/power_supply.
    DesktopPower(BusLink& systemBus, std::string powerSupplyFolder);

    /// Asks afresh. A service that does not answer within 60 milliseconds counts as one that is not there.
    [[nodiscard]] PowerState state();

private:
    BusLink& systemBus_;
    const std::string powerSupplyFolder_;
};

} // namespace norvane
