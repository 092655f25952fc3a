// Time Machine, driven and read through `tmutil` and `defaults` alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/command_runner.h"
#include "platform/network_probe.h"
#include "platform/tool_paths.h"
#include "platform/workspace.h"
#include "scheduler_core/calendar.h"
#include "timemachine/tm_status.h"

namespace norvane {

/// The tools and what they print. Holds no state: every call asks afresh. Everything that runs a tool or
/// opens a connection blocks and belongs on a background thread; several may run at once. Nothing reports an
/// error: a tool that cannot run, fails or times out gives the neutral value named at each call.
class TMUtil {
public:
    using CommandResult = norvane::CommandResult;

    /// The first destination as `tmutil destinationinfo` describes it. With several destinations each field
    /// comes from the first line that carries its label.
    struct DestinationSummary {
        std::optional<std::string> name;
        std::optional<std::string> kind; ///< "Network" and "Local" mean something to us.
        std::optional<std::string> mountPoint;
        std::optional<std::string> urlString;

        bool operator==(const DestinationSummary&) const = default;
    };

    /// One entry of "Destinations" in Time Machine's preferences.
    struct DestinationStatus {
        std::vector<Instant> snapshotDates; ///< Of the backups it holds, in the order stored.
        std::vector<Instant> attemptDates;  ///< When attempts to back up to it started.
        std::optional<std::int64_t> bytesAvailable;
        std::optional<std::int64_t> bytesUsed;
        std::optional<std::int64_t> result; ///< Time Machine's code for the last attempt; 0 is success.
        std::vector<std::string> messageParameters;

        bool operator==(const DestinationStatus&) const = default;
    };

    /// A snapshot that Time Machine keeps on the startup disk between backups.
    struct LocalSnapshot {
        Instant date;
        std::string token; ///< The date as its name has it, "2024-05-01-101500"; what the tools call it by.

        bool operator==(const LocalSnapshot&) const = default;
    };

    /// The interfaces must outlive this object.
    TMUtil(const CommandRunner& runner, ToolPaths tools, const NetworkProbe& network, Workspace& workspace);

    /// `tmutil status`; the idle status when it fails.
    [[nodiscard]] TMStatus status() const;
    /// `tmutil destinationinfo`; absent fields when it fails.
    [[nodiscard]] DestinationSummary destinationSummary() const;
    /// `tmutil startbackup`; none when it could not be run.
    [[nodiscard]] std::optional<CommandResult> startBackup() const;
    /// `tmutil stopbackup`; none when it could not be run.
    std::optional<CommandResult> stopBackup() const;
    /// "Destinations" in Time Machine's preferences, in order; empty when they cannot be read.
    [[nodiscard]] std::vector<DestinationStatus> destinationStatuses() const;
    /// Time Machine's own automatic backups; none when unknown.
    [[nodiscard]] std::optional<bool> autoBackupEnabled() const;
    /// `tmutil listlocalsnapshots`, newest first; empty when it fails. The names are in the calendar's zone.
    [[nodiscard]] std::vector<LocalSnapshot> listLocalSnapshots(const std::string& volume,
                                                                const Calendar& calendar) const;
    /// `tmutil deletelocalsnapshots`; false when it fails. The token is a LocalSnapshot's.
    [[nodiscard]] bool deleteLocalSnapshot(const std::string& token) const;
    /// Whether the endpoint accepts a connection within the time.
    [[nodiscard]] bool canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const;

    /// Opens the Time Machine pane of the system's settings. Main thread; runs no tool.
    void openTimeMachineSettings() const;

    // What the tools print, read. Pure.

    /// The status in the output of `tmutil status`; the idle status when there is none.
    [[nodiscard]] static TMStatus parseStatus(std::string_view text);
    /// The value of the first line "key : value"; none when there is no such line or its value is blank.
    [[nodiscard]] static std::optional<std::string> infoValue(std::string_view key, std::string_view text);
    /// The destinations in an exported property list of Time Machine's preferences.
    [[nodiscard]] static std::vector<DestinationStatus> parseDestinationStatuses(std::string_view text);
    /// Time Machine's snapshots in the output of `tmutil listlocalsnapshots`, newest first.
    [[nodiscard]] static std::vector<LocalSnapshot> parseLocalSnapshots(std::string_view text,
                                                                        const Calendar& calendar);
    /// Where the destination with this URL can be reached, in the order to try; empty without a host.
    [[nodiscard]] static std::vector<NetworkEndpoint> endpoints(std::string_view destinationUrl);

private:
    const CommandRunner& runner_;
    const ToolPaths tools_;
    const NetworkProbe& network_;
    Workspace& workspace_;
};

} // namespace norvane
