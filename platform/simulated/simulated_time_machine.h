// A simulated Time Machine behind `tmutil` and `defaults`, answering in their real text formats.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "platform/command_runner.h"
#include "platform/simulated/simulated_time.h"
#include "platform/text/property_list.h"

namespace norvane {

/// Set the fields, run the program, read the fields. A backup started with "startbackup" (or with `begin`)
/// runs for `backupSeconds` of simulated time and then leaves a snapshot, unless told otherwise.
class SimulatedTimeMachine final : public CommandRunner {
public:
    explicit SimulatedTimeMachine(SimulatedTime& time) : time_(time) {}

    std::optional<CommandResult> run(const std::string& executablePath,
                                     const std::vector<std::string>& arguments,
                                     double timeoutSeconds) const override;

    /// Time Machine starts a backup by itself.
    void begin() const;
    [[nodiscard]] bool running() const;

    // The destination.
    std::optional<std::string> name = "Backup Disk";
    std::string kind = "Local";
    std::string mountPoint = "/Volumes/Backup";
    bool mounted = true; ///< False: the mount point is not told.
    std::string url;
    mutable std::vector<Instant> snapshotDates;
    mutable std::vector<Instant> attemptDates;
    /// Of a second destination, which there is while this is set.
    mutable std::optional<std::vector<Instant>> secondSnapshotDates;
    std::int64_t bytesUsed = 400'000'000'000;
    std::int64_t bytesAvailable = 600'000'000'000;
    std::int64_t result = 0;
    std::vector<std::string> messageParameters;
    bool preferencesReadable = true;
    bool autoBackup = false;

    // The startup disk.
    mutable std::vector<std::string> localSnapshots; ///< Their tokens, in the order to list them.
    std::set<std::string> undeletable;               ///< Tokens of those that cannot be deleted.

    // How the next backups go.
    double backupSeconds = 300;
    std::int64_t backupBytes = 1'000'000'000;
    std::string phase = "Copying";
    bool tellsProgress = true;               ///< False: running, and nothing more.
    bool startsBackups = true;               ///< False: "startbackup" exits 0 and nothing happens.
    bool leavesSnapshots = true;             ///< False: the backup ends without one.
    double snapshotDelaySeconds = 0;         ///< After the end, until the preferences tell of the snapshot.
    bool usesSecondDestination = false;      ///< If there is one, the snapshots go there.
    std::optional<std::int64_t> stallsAt;    ///< Copied bytes at which the copy hangs.
    std::optional<CommandResult> startsWith; ///< What "startbackup" answers instead of starting.
    double stopSeconds = 0;                  ///< From "stopbackup" to the end.
    bool ignoresStop = false;                ///< "stopbackup" has no effect.
    bool toolsMissing = false;               ///< No tool can be started.

    mutable std::vector<std::string> commands; ///< Every command line, "tmutil status" left out.
    mutable int statusQueries = 0;

private:
    CommandResult tmutil(const std::string& verb) const;
    [[nodiscard]] std::string localSnapshotsText() const;
    CommandResult deleteLocalSnapshot(const std::string& token) const;
    CommandResult defaults(const std::vector<std::string>& arguments) const;
    [[nodiscard]] std::string statusText() const;
    [[nodiscard]] std::string destinationText() const;
    [[nodiscard]] std::string preferencesText() const;
    [[nodiscard]] PropertyList destinationEntry(const std::vector<Instant>& snapshots) const;
    void catchUp() const;

    struct LateSnapshot {
        Instant date;
        Instant toldFrom;
    };

    SimulatedTime& time_;
    mutable std::optional<Instant> startedAt_; // none: idle
    mutable std::optional<Instant> stopsAt_;
    mutable std::optional<LateSnapshot> lateSnapshot_; // not in the preferences yet
    /// What `preferencesText_` tells.
    mutable std::tuple<std::optional<std::string>, std::vector<Instant>, std::vector<Instant>,
                       std::optional<std::vector<Instant>>, std::int64_t, std::int64_t, std::int64_t,
                       std::vector<std::string>, bool>
        preferences_;
    mutable std::string preferencesText_;
};

} // namespace norvane
