#include "controller/deferral.h"

#include <algorithm>
#include <utility>

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

void addPowerReasons(const ConditionsConfig& conditions, ConditionMeasurements& measurements,
                     std::vector<std::string>& reasons) {
    const std::int64_t minimum = conditions.minBatteryPercent;
    if (!conditions.requireAC && minimum < 1 && !conditions.deferInLowPowerMode)
        return;
    const PowerState power = measurements.powerState();
    if (conditions.requireAC && !power.onAC)
        reasons.emplace_back("running on battery power");
    if (minimum >= 1 && power.batteryPercent && *power.batteryPercent < minimum)
        reasons.push_back("battery below " + std::to_string(minimum) + "%");
    if (conditions.deferInLowPowerMode && power.lowPowerMode)
        reasons.emplace_back("Low Power Mode is on");
}

void addActivityReason(ConditionMeasurements& measurements, std::vector<std::string>& reasons) {
    const MediaUse use = measurements.mediaUse();
    if (use.camera)
        reasons.emplace_back("camera is in use");
    else if (use.microphone)
        reasons.emplace_back("microphone is in use");
    else if (use.screen)
        reasons.emplace_back("screen is being shared");
}

void addApplicationReasons(const std::vector<BlockedApp>& apps, ConditionMeasurements& measurements,
                           std::vector<std::string>& reasons) {
    const std::set<std::string> running = measurements.runningApplications();
    int added = 0;
    for (const BlockedApp& app : apps) {
        if (!running.contains(app.bundleID))
            continue;
        reasons.push_back(onOneLine(app.name) + " is running");
        if (++added == maxApplicationReasons)
            return;
    }
}

void addLoadReason(double maxLoadPerCore, ConditionMeasurements& measurements,
                   std::vector<std::string>& reasons) {
    const std::optional<double> load = measurements.loadPerCore();
    if (load && *load > maxLoadPerCore)
        reasons.push_back(fillIn("the Mac is busy (load %.1f/core)", {*load}));
}

} // namespace

std::vector<std::string> ConditionProbes::deferralReasons(const ConditionsConfig& conditions,
                                                          const std::optional<DestinationFolder>& destination,
                                                          ConditionMeasurements& measurements,
                                                          const FileSystem& files) {
    std::vector<std::string> reasons;
    addPowerReasons(conditions, measurements, reasons);
    if (conditions.deferWhileCameraOrMicInUse)
        addActivityReason(measurements, reasons);
    if (!conditions.blockedApps.empty())
        addApplicationReasons(conditions.blockedApps, measurements, reasons);
    if (conditions.maxLoadPerCore && *conditions.maxLoadPerCore > 0)
        addLoadReason(*conditions.maxLoadPerCore, measurements, reasons);
    if (conditions.requireDestinationPresent.value_or(false) && destination &&
        !isConnected(*destination, files))
        reasons.emplace_back("backup disk isn't connected");
    return reasons;
}

std::optional<DeferralInfo> deferral(const std::optional<DeferralInfo>& before,
                                     std::vector<std::string> reasons, const ConditionsConfig& conditions,
                                     Instant now) {
    const Instant originalDue = before ? before->originalDue : now;
    const Instant forceAt = plusSeconds(originalDue, conditions.maxDeferralHours * 3600);
    if (now >= forceAt)
        return std::nullopt;
    const Instant recheck = plusSeconds(now, static_cast<double>(conditions.recheckMinutes) * 60);
    return DeferralInfo{std::move(reasons), originalDue, forceAt, std::min(recheck, forceAt)};
}

} // namespace norvane
