#include "platform/linux/measurements/desktop_power.h"

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/bus/properties_question.h"
#include "platform/linux/measurements/power_supplies.h"

namespace norvane {

namespace {

/// None: UPower does not tell all of it. `battery`: what the desktop shows as one for all batteries.
std::optional<PowerState> sourceFromUPower(PropertiesQuestion& upower, PropertiesQuestion& battery) {
    const auto onBattery = upower.get<bool>("OnBattery");
    const auto present = battery.get<bool>("IsPresent");
    if (!onBattery || !present)
        return std::nullopt;
    if (!*present)
        return PowerState{};
    PowerState state;
    state.onAC = !*onBattery;
    const auto percentage = battery.get<double>("Percentage");
    if (percentage && *percentage >= 0 && *percentage <= 100)
        state.batteryPercent = static_cast<std::int64_t>(*percentage);
    return state;
}

} // namespace

DesktopPower::DesktopPower(BusLink& systemBus, std::string powerSupplyFolder)
    : systemBus_(systemBus), powerSupplyFolder_(std::move(powerSupplyFolder)) {}

PowerState DesktopPower::state() {
    const auto ask = [](BusLink& bus, const char* service, const char* path, const char* interface) {
        constexpr std::chrono::milliseconds limit{60}; // for all of them, as all wait at the same time
        return PropertiesQuestion(bus, service, path, interface, limit);
    };
    PropertiesQuestion upower =
        ask(systemBus_, "org.freedesktop.UPower", "/org/freedesktop/UPower", "org.freedesktop.UPower");
    PropertiesQuestion battery =
        ask(systemBus_, "org.freedesktop.UPower", "/org/freedesktop/UPower/devices/DisplayDevice",
            "org.freedesktop.UPower.Device");
    std::vector<PropertiesQuestion> profiles;
    profiles.push_back(
        ask(systemBus_, "net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles"));
    profiles.push_back(ask(systemBus_, "org.freedesktop.UPower.PowerProfiles",
                           "/org/freedesktop/UPower/PowerProfiles", "org.freedesktop.UPower.PowerProfiles"));

    const auto told = sourceFromUPower(upower, battery);
    PowerState state = told ? *told : powerFromSupplies(powerSupplyFolder_);
    for (PropertiesQuestion& service : profiles)
        if (const auto active = service.get<QString>("ActiveProfile"))
            state.lowPowerMode = *active == "power-saver";
    return state;
}

} // namespace norvane
