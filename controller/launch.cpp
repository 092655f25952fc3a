#include "controller/launch.h"

#include <algorithm>

#include "platform/text/white_space.h"
#include "platform/translator.h"

namespace norvane {

namespace {

constexpr double endpointTimeoutSeconds = 5;
constexpr std::int64_t tooFewFreeBytes = 9'999'999'999;

std::string quoted(const std::optional<std::string>& destinationName) {
    return '"' + destinationName.value_or("destination") + '"';
}

/// Whether the destination can be expected to answer: true for all but a network destination that is silent.
bool destinationAnswers(const TMUtil& tmUtil, const TMUtil::DestinationSummary& summary) {
    if (summary.kind != "Network" || !summary.urlString)
        return true;
    const std::vector<NetworkEndpoint> endpoints = TMUtil::endpoints(*summary.urlString);
    return endpoints.empty() || std::any_of(endpoints.begin(), endpoints.end(), [&](const auto& endpoint) {
               return tmUtil.canConnect(endpoint, endpointTimeoutSeconds);
           });
}

} // namespace

std::optional<LaunchProblem> preflightProblem(std::optional<std::int64_t> freeBytes, bool destinationVanished,
                                              const std::optional<std::string>& destinationName) {
    if (freeBytes && *freeBytes <= tooFewFreeBytes)
        return fillIn(
            "Startup disk is nearly full (%.1f GB free) — Time Machine needs room to stage backups. "
            "Free up space",
            {static_cast<double>(*freeBytes) / 1e9});
    if (destinationVanished)
        return "Backup disk " + quoted(destinationName) + " isn't mounted";
    return std::nullopt;
}

LaunchOutcome launchBackup(const TMUtil& tmUtil) {
    const TMUtil::DestinationSummary destination = tmUtil.destinationSummary();
    if (!destinationAnswers(tmUtil, destination))
        return "Backup drive " + quoted(destination.name) +
               " isn't responding on the network — it may be asleep, off, or on a different network";
    const std::optional<CommandResult> started = tmUtil.startBackup();
    if (!started)
        return "startbackup could not run";
    if (started->exitCode != 0)
        return "startbackup exited " + std::to_string(started->exitCode) + ": " +
               std::string(trimWhitespace(started->stderr));
    return tmUtil.status();
}

} // namespace norvane
