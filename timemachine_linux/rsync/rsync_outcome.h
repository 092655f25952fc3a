// What an ended rsync run means for the backup. Pure. Source: rsync(1), EXIT VALUES; errno(3) on Linux.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "timemachine_linux/session/result_code.h"

namespace norvane {

struct RsyncExit {
    int status = 0;                  ///< Exit status; for an end by a signal 128 + its number.
    std::vector<std::string> errors; ///< The lines of standard error, in order.
};

struct RsyncOutcome {
    std::optional<BackupFailure> failure;
    std::vector<std::string> notes; ///< On success: what could not be saved.
};

/// Whether this line of standard error makes a backup fail, whatever rsync's exit status: the receiving side
/// missed something, or a source as a whole or its device does not answer.
[[nodiscard]] bool isFatal(std::string_view line);

[[nodiscard]] RsyncOutcome judgeRsyncExit(const RsyncExit& exit, bool stopRequested);

} // namespace norvane
