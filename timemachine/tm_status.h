// One observation of Time Machine, as `tmutil status` prints it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/formats.h"
#include "platform/text/property_list.h"
#include "platform/translator.h"

namespace norvane {

/// Counters of the running copy.
struct BackupProgress {
    std::int64_t bytes = 0;              ///< Bytes copied so far.
    std::int64_t totalBytes = 0;         ///< Bytes to copy; always > 0.
    std::int64_t files = 0;              ///< Files copied so far; 0 when not reported.
    std::int64_t totalFiles = 0;         ///< Files to copy; 0 when not reported.
    std::optional<double> timeRemaining; ///< Seconds; present only when reported and > 0.

    bool operator==(const BackupProgress&) const = default;
};

struct TMStatus {
    bool running = false;
    std::optional<double> percent;    ///< Overall completion, 0 to 1.
    std::optional<std::string> phase; ///< Exactly as printed, such as "Copying".
    std::optional<BackupProgress> progress;
    std::optional<double> fractionOfProgressBar; ///< Time Machine's own progress bar, 0 to 1.
    PropertyList::Dictionary raw;                ///< Everything that was printed.

    bool operator==(const TMStatus&) const = default;

    /// The status used whenever none can be obtained: nothing runs, nothing else is known.
    [[nodiscard]] static const TMStatus& idle();

    /// How much was copied, in the user's language and locale ("5.12 GB copied"); none without progress.
    [[nodiscard]] std::optional<std::string> copiedText(const Formats& formats,
                                                        const Translator& translator) const;
};

} // namespace norvane
