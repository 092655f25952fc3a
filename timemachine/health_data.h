// The history of backups and the space figures, from Time Machine's own records.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/file_system.h"
#include "platform/time/clock.h"
#include "timemachine/tm_util.h"

namespace norvane {

struct HealthData {
    struct Attempt {
        Instant id;   ///< Equal to `date`.
        Instant date; ///< When the attempt started.
        bool success = false;
        std::optional<double> duration; ///< Seconds from the start to the snapshot; present on success.

        bool operator==(const Attempt&) const = default;
    };

    std::optional<Instant> lastSuccess;  ///< Newest backup on the first destination.
    std::optional<Instant> oldestBackup; ///< Oldest backup there.
    std::int64_t backupCount = 0;
    std::optional<std::int64_t> destinationBytesUsed;
    std::optional<std::int64_t> destinationBytesAvailable;
    std::optional<std::int64_t> sourceFreeBytes; ///< On the volume that holds the home folder.
    std::vector<Attempt> attempts;               ///< Of the last 30 days, oldest first, at most 20.

    bool operator==(const HealthData&) const = default;

    /// Reads the records. Blocks while a tool runs; background threads only.
    [[nodiscard]] static HealthData load(const TMUtil& tmUtil, const FileSystem& files, const Clock& clock);

    /// What `load` makes of the records. Pure.
    [[nodiscard]] static HealthData assemble(const std::vector<TMUtil::DestinationStatus>& statuses,
                                             std::optional<std::int64_t> sourceFreeBytes, Instant now);
};

} // namespace norvane
