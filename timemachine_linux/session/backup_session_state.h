// What `tmutil status` tells about a running backup, and the files by which the processes agree on it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/text/property_list.h"
#include "platform/time/instant.h"

namespace norvane {

/// The files of the user's backup session.
struct SessionFiles {
    explicit SessionFiles(const std::string& stateFolder);

    std::string folder;
    std::string runLock;  ///< Held while a worker lives; its content is the worker's process id.
    std::string copyLock; ///< Held while any process of rsync lives.
    std::string status;   ///< The running worker's state.
    std::string filter;   ///< rsync's rules of the present run.
    std::string leftover; ///< Which unfinished snapshot can be trusted.
    std::string log;      ///< What the last run had to say.
};

/// Phases by the names that Time Machine gives them.
namespace phase {
inline constexpr const char* starting = "Starting";
inline constexpr const char* findingChanges = "FindingChanges";
inline constexpr const char* thinningBefore = "ThinningPreBackup";
inline constexpr const char* copying = "Copying";
inline constexpr const char* finishing = "Finishing";
inline constexpr const char* thinningAfter = "ThinningPostBackup";
} // namespace phase

struct CopyProgress {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t totalBytes = 0;
    std::int64_t totalFiles = 0;
    std::optional<double> secondsRemaining;

    /// 0 to 1: of the bytes, or of the files when there are no bytes to copy.
    [[nodiscard]] double fraction() const;
};

struct BackupSessionState {
    std::string phase = phase::starting;
    Instant dateOfStateChange{};
    std::string destinationId;
    std::string mountPoint;
    std::optional<CopyProgress> progress; ///< From the moment the totals are known.
    bool stopping = false;

    /// Of the whole backup, 0 to 1; never goes back from phase to phase.
    [[nodiscard]] double fractionOfProgressBar() const;
};

[[nodiscard]] PropertyList statusOf(const BackupSessionState& state);
[[nodiscard]] PropertyList idleStatus();

/// Remaining seconds at the average pace so far; none before there is one. Files cost time beside bytes.
[[nodiscard]] std::optional<double> estimateSecondsRemaining(const CopyProgress& progress,
                                                             double elapsedSeconds);

/// The status as it is now: the idle one unless a worker lives.
[[nodiscard]] PropertyList currentStatus(const SessionFiles& files);

} // namespace norvane
