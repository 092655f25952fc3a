// What may keep a backup from starting, before Time Machine is asked and in its answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "timemachine/tm_util.h"

namespace norvane {

/// Problems are told as the log and the user read them.
using LaunchProblem = std::optional<std::string>;

/// What is plain without asking. `freeBytes`: on the volume of the home folder; none: unknown.
[[nodiscard]] LaunchProblem preflightProblem(std::optional<std::int64_t> freeBytes, bool destinationVanished,
                                             const std::optional<std::string>& destinationName);

/// What came of asking Time Machine for a backup.
struct LaunchOutcome {
    LaunchProblem problem;
    TMStatus status; ///< Right after the request, without a problem.
};

/// Wakes a network destination and asks for the backup. Blocks; background threads only.
[[nodiscard]] LaunchOutcome launchBackup(const TMUtil& tmUtil);

} // namespace norvane
