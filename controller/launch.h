// What may keep a backup from starting, before Time Machine is asked and in its answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "timemachine/tm_util.h"

namespace norvane {

/// As the log and the user read it.
using LaunchProblem = std::string;

/// What is plain without asking. `freeBytes`: on the volume of the home folder; none: unknown.
[[nodiscard]] std::optional<LaunchProblem>
preflightProblem(std::optional<std::int64_t> freeBytes, bool destinationVanished,
                 const std::optional<std::string>& destinationName);

/// What came of asking Time Machine for a backup: a problem, or its status right afterwards.
using LaunchOutcome = std::variant<LaunchProblem, TMStatus>;

/// Wakes a network destination and asks for the backup. Blocks; background threads only.
[[nodiscard]] LaunchOutcome launchBackup(const TMUtil& tmUtil);

} // namespace norvane
