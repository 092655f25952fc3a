// Why a due backup must wait, and for how long.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controller/controller_state.h"
#include "controller/destination_folder.h"
#include "platform/condition_measurements.h"

namespace norvane {

namespace ConditionProbes {

/// The reasons that hold now, in a fixed order, as the user reads them; empty when the backup may start. Only
/// what the conditions ask for is measured. `destination`: none when it is not a local one, or unknown. Main
/// thread.
[[nodiscard]] std::vector<std::string> deferralReasons(const ConditionsConfig& conditions,
                                                       const std::optional<DestinationFolder>& destination,
                                                       ConditionMeasurements& measurements,
                                                       const FileSystem& files);

} // namespace ConditionProbes

/// The wait goes on for these reasons, or begins, with none `before`. None: its longest time is over, and the
/// backup starts despite them.
[[nodiscard]] std::optional<DeferralInfo> deferral(const std::optional<DeferralInfo>& before,
                                                   std::vector<std::string> reasons,
                                                   const ConditionsConfig& conditions, Instant now);

} // namespace norvane
