#include "scheduler_core/conditions_json.h"

#include "scheduler_core/json_reader.h"
#include "scheduler_core/json_writer.h"

namespace norvane {

namespace {

namespace CodingKeys {
constexpr const char* bundleID = "bundleID";
constexpr const char* name = "name";
constexpr const char* requireAC = "requireAC";
constexpr const char* minBatteryPercent = "minBatteryPercent";
constexpr const char* deferInLowPowerMode = "deferInLowPowerMode";
constexpr const char* deferWhileCameraOrMicInUse = "deferWhileCameraOrMicInUse";
constexpr const char* blockedApps = "blockedApps";
constexpr const char* maxDeferralHours = "maxDeferralHours";
constexpr const char* recheckMinutes = "recheckMinutes";
constexpr const char* maxLoadPerCore = "maxLoadPerCore";
constexpr const char* requireDestinationPresent = "requireDestinationPresent";
} // namespace CodingKeys

using json_reader::required;
using InJson = json_reader::Json;
using OutJson = json_writer::Json;

OutJson writeApps(const std::vector<BlockedApp>& apps) {
    OutJson list = OutJson::array();
    for (const BlockedApp& app : apps)
        list.push_back({{CodingKeys::bundleID, app.bundleID}, {CodingKeys::name, app.name}});
    return list;
}

OutJson write(const ConditionsConfig& conditions) {
    OutJson document = {{CodingKeys::requireAC, conditions.requireAC},
                        {CodingKeys::minBatteryPercent, conditions.minBatteryPercent},
                        {CodingKeys::deferInLowPowerMode, conditions.deferInLowPowerMode},
                        {CodingKeys::deferWhileCameraOrMicInUse, conditions.deferWhileCameraOrMicInUse},
                        {CodingKeys::blockedApps, writeApps(conditions.blockedApps)},
                        {CodingKeys::maxDeferralHours, json_writer::number(conditions.maxDeferralHours)},
                        {CodingKeys::recheckMinutes, conditions.recheckMinutes}};
    if (conditions.maxLoadPerCore)
        document[CodingKeys::maxLoadPerCore] = json_writer::number(*conditions.maxLoadPerCore);
    if (conditions.requireDestinationPresent)
        document[CodingKeys::requireDestinationPresent] = *conditions.requireDestinationPresent;
    return document;
}

std::vector<BlockedApp> readApps(const InJson& list) {
    std::vector<BlockedApp> apps;
    for (const InJson& app : json_reader::array(list))
        apps.push_back({.bundleID = json_reader::string(required(app, CodingKeys::bundleID)),
                        .name = json_reader::string(required(app, CodingKeys::name))});
    return apps;
}

ConditionsConfig read(const InJson& document) {
    using json_reader::boolean;
    using json_reader::integer;
    using json_reader::number;
    ConditionsConfig result{
        .requireAC = boolean(required(document, CodingKeys::requireAC)),
        .minBatteryPercent = integer(required(document, CodingKeys::minBatteryPercent)),
        .deferInLowPowerMode = boolean(required(document, CodingKeys::deferInLowPowerMode)),
        .deferWhileCameraOrMicInUse = boolean(required(document, CodingKeys::deferWhileCameraOrMicInUse)),
        .blockedApps = readApps(required(document, CodingKeys::blockedApps)),
        .maxDeferralHours = number(required(document, CodingKeys::maxDeferralHours)),
        .recheckMinutes = integer(required(document, CodingKeys::recheckMinutes)),
        .maxLoadPerCore = std::nullopt,
        .requireDestinationPresent = std::nullopt,
    };
    if (const InJson* load = json_reader::optional(document, CodingKeys::maxLoadPerCore))
        result.maxLoadPerCore = number(*load);
    if (const InJson* present = json_reader::optional(document, CodingKeys::requireDestinationPresent))
        result.requireDestinationPresent = boolean(*present);
    return result;
}

} // namespace

std::optional<std::string> encodeConditions(const ConditionsConfig& conditions) {
    return json_writer::encodeDocument([&conditions] { return write(conditions); });
}

Decoded<ConditionsConfig> decodeConditions(std::string_view text) {
    return json_reader::decodeDocument<ConditionsConfig>(text, read);
}

} // namespace norvane
