#include "platform/linux/desktop_power.h"

#include <utility>

#include "platform/linux/power_supplies.h"

namespace norvane {

DesktopPower::DesktopPower(BusLink& systemBus, BusLink* portalBus, std::string powerSupplyFolder)
    : upower_(systemBus, "org.freedesktop.UPower", "/org/freedesktop/UPower", "org.freedesktop.UPower"),
      battery_(systemBus, "org.freedesktop.UPower", "/org/freedesktop/UPower/devices/DisplayDevice",
               "org.freedesktop.UPower.Device"),
      profiles_(systemBus, "net.hadess.PowerProfiles", "/net/hadess/PowerProfiles",
                "net.hadess.PowerProfiles"),
      renamedProfiles_(systemBus, "org.freedesktop.UPower.PowerProfiles",
                       "/org/freedesktop/UPower/PowerProfiles", "org.freedesktop.UPower.PowerProfiles"),
      powerSupplyFolder_(std::move(powerSupplyFolder)) {
    if (portalBus)
        portal_ = std::make_unique<WatchedProperties>(*portalBus, "org.freedesktop.portal.Desktop",
                                                      "/org/freedesktop/portal/desktop",
                                                      "org.freedesktop.portal.PowerProfileMonitor");
}

PowerState DesktopPower::state() {
    const auto told = sourceFromUPower();
    PowerState state = told ? *told : powerFromSupplies(powerSupplyFolder_);
    state.lowPowerMode = lowPowerMode();
    return state;
}

/// None: UPower does not tell all of it.
std::optional<PowerState> DesktopPower::sourceFromUPower() {
    const auto onBattery = upower_.get<bool>("OnBattery");
    const auto present = battery_.get<bool>("IsPresent");
    if (!onBattery || !present)
        return std::nullopt;
    if (!*present)
        return PowerState{};
    PowerState state;
    state.onAC = !*onBattery;
    const auto percentage = battery_.get<double>("Percentage");
    if (percentage && *percentage >= 0 && *percentage <= 100)
        state.batteryPercent = static_cast<std::int64_t>(*percentage);
    return state;
}

bool DesktopPower::lowPowerMode() {
    for (WatchedProperties* profiles : {&profiles_, &renamedProfiles_})
        if (const auto active = profiles->get<QString>("ActiveProfile"))
            return *active == "power-saver";
    return portal_ && portal_->get<bool>("power-saver-enabled").value_or(false);
}

} // namespace norvane
