#include "timemachine/tm_util.h"

#include <utility>

#include "platform/text/white_space.h"

namespace norvane {

namespace {

constexpr double tmutilTimeoutSeconds = 15;
constexpr double defaultsTimeoutSeconds = 10;
constexpr double deletionTimeoutSeconds = 30;
constexpr auto preferencesPath = "/Library/Preferences/com.apple.TimeMachine.plist";
constexpr auto settingsUrl = "x-apple.systempreferences:com.apple.Time-Machine-Settings.extension";

} // namespace

TMUtil::TMUtil(const CommandRunner& runner, ToolPaths tools, const NetworkProbe& network,
               Workspace& workspace)
    : runner_(runner), tools_(std::move(tools)), network_(network), workspace_(workspace) {}

TMStatus TMUtil::status() const {
    const auto result = runner_.run(tools_.tmutil, {"status"}, tmutilTimeoutSeconds);
    return result && result->exitCode == 0 ? parseStatus(result->stdout) : TMStatus::idle();
}

TMUtil::DestinationSummary TMUtil::destinationSummary() const {
    const auto result = runner_.run(tools_.tmutil, {"destinationinfo"}, tmutilTimeoutSeconds);
    const std::string output = result ? result->stdout : "";
    return {infoValue("Name", output), infoValue("Kind", output), infoValue("Mount Point", output),
            infoValue("URL", output)};
}

std::optional<TMUtil::CommandResult> TMUtil::startBackup() const {
    return runner_.run(tools_.tmutil, {"startbackup"}, tmutilTimeoutSeconds);
}

std::optional<TMUtil::CommandResult> TMUtil::stopBackup() const {
    return runner_.run(tools_.tmutil, {"stopbackup"}, tmutilTimeoutSeconds);
}

std::vector<TMUtil::DestinationStatus> TMUtil::destinationStatuses() const {
    const auto result =
        runner_.run(tools_.defaults, {"export", preferencesPath, "-"}, defaultsTimeoutSeconds);
    if (!result || result->exitCode != 0)
        return {};
    return parseDestinationStatuses(result->stdout);
}

std::optional<bool> TMUtil::autoBackupEnabled() const {
    const auto result =
        runner_.run(tools_.defaults, {"read", preferencesPath, "AutoBackup"}, defaultsTimeoutSeconds);
    if (!result || result->exitCode != 0)
        return std::nullopt;
    return trimWhitespace(result->stdout) == "1";
}

std::vector<TMUtil::LocalSnapshot> TMUtil::listLocalSnapshots(const std::string& volume,
                                                              const Calendar& calendar) const {
    const auto result = runner_.run(tools_.tmutil, {"listlocalsnapshots", volume}, tmutilTimeoutSeconds);
    if (!result || result->exitCode != 0)
        return {};
    return parseLocalSnapshots(result->stdout, calendar);
}

bool TMUtil::deleteLocalSnapshot(const std::string& token) const {
    const auto result = runner_.run(tools_.tmutil, {"deletelocalsnapshots", token}, deletionTimeoutSeconds);
    return result && result->exitCode == 0;
}

bool TMUtil::canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const {
    return network_.canConnect(endpoint, timeoutSeconds);
}

void TMUtil::openTimeMachineSettings() const { workspace_.openUrl(settingsUrl); }

} // namespace norvane
