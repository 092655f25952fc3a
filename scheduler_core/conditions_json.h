// The stored form of the deferral conditions (JSON, RFC 8259).
//
// One object with the configuration's field names as keys. All are required but "maxLoadPerCore" and
// "requireDestinationPresent", which are left out when absent and may be null on reading. Others are ignored.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "scheduler_core/conditions_config.h"
#include "scheduler_core/decoded.h"

namespace norvane {

/// None when JSON has no form for it: a number that is not finite, a text that is not UTF-8.
[[nodiscard]] std::optional<std::string> encodeConditions(const ConditionsConfig& conditions);

/// Any fault anywhere fails the whole document.
[[nodiscard]] Decoded<ConditionsConfig> decodeConditions(std::string_view text);

} // namespace norvane
