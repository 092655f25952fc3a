#include "controller/condition_probes.h"

#include <algorithm>

#include "platform/translator.h"

namespace norvane {

namespace {

/// A name as one line, because each event is one line of the log.
std::string onOneLine(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
    return name;
}

constexpr int maxApplicationReasons = 3;

} // namespace

std::vector<std::string>
ConditionProbes::deferralReasons(const ConditionsConfig& conditions,
                                 const std::optional<DestinationFolder>& destinationMountPoint) {
    std::vector<std::string> reasons;
    addPowerReasons(conditions, reasons);
    if (conditions.deferWhileCameraOrMicInUse)
        addActivityReason(reasons);
    if (!conditions.blockedApps.empty())
        addApplicationReasons(conditions.blockedApps, reasons);
    if (conditions.maxLoadPerCore && *conditions.maxLoadPerCore > 0)
        addLoadReason(*conditions.maxLoadPerCore, reasons);
    if (conditions.requireDestinationPresent.value_or(false) && destinationMountPoint &&
        !isConnected(*destinationMountPoint, files_))
        reasons.emplace_back("backup disk isn't connected");
    return reasons;
}

void ConditionProbes::addPowerReasons(const ConditionsConfig& conditions, std::vector<std::string>& reasons) {
    const std::int64_t minimum = conditions.minBatteryPercent;
    if (!conditions.requireAC && minimum < 1 && !conditions.deferInLowPowerMode)
        return;
    const PowerState power = measurements_.powerState();
    if (conditions.requireAC && !power.onAC)
        reasons.emplace_back("running on battery power");
    if (minimum >= 1 && power.batteryPercent && *power.batteryPercent < minimum)
        reasons.push_back("battery below " + std::to_string(minimum) + "%");
    if (conditions.deferInLowPowerMode && power.lowPowerMode)
        reasons.emplace_back("Low Power Mode is on");
}

void ConditionProbes::addActivityReason(std::vector<std::string>& reasons) {
    const MediaUse use = measurements_.mediaUse();
    if (use.camera)
        reasons.emplace_back("camera is in use");
    else if (use.microphone)
        reasons.emplace_back("microphone is in use");
    else if (use.screen)
        reasons.emplace_back("screen is being shared");
}

void ConditionProbes::addApplicationReasons(const std::vector<BlockedApp>& apps,
                                            std::vector<std::string>& reasons) {
    const std::set<std::string> running = measurements_.runningApplications();
    int added = 0;
    for (const BlockedApp& app : apps) {
        if (!running.contains(app.bundleID))
            continue;
        reasons.push_back(onOneLine(app.name) + " is running");
        if (++added == maxApplicationReasons)
            return;
    }
}

void ConditionProbes::addLoadReason(double maxLoadPerCore, std::vector<std::string>& reasons) {
    const std::optional<double> load = measurements_.loadPerCore();
    if (load && *load > maxLoadPerCore)
        reasons.push_back(fillIn("the Mac is busy (load %.1f/core)", {*load}));
}

} // namespace norvane
