// How long a due backup waits for conditions that forbid it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controller/controller_state.h"

namespace norvane {

/// The wait goes on for these reasons, or begins, with none `before`. None: its longest time is over, and the
/// backup starts despite them.
[[nodiscard]] std::optional<DeferralInfo> deferral(const std::optional<DeferralInfo>& before,
                                                   std::vector<std::string> reasons,
                                                   const ConditionsConfig& conditions, Instant now);

} // namespace norvane
