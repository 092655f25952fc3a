// The stored form of a schedule (JSON, RFC 8259).
//
//   {"rules":[{"interval":{"hours":6}},
//             {"dailyTimes":{"_0":[{"hour":9,"minute":0}]}},
//             {"weekdayTimes":{"_0":[{"weekday":2,"times":[{"hour":12,"minute":0}]}]}}],
//    "blackouts":[{"days":[2,3],"start":{"hour":22,"minute":30},"end":{"hour":6,"minute":15}}]}
//
// Every key is required, others are ignored. Times are taken as stored, even out of range.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "scheduler_core/decoded.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// None when JSON has no form for it: an interval that is not finite.
[[nodiscard]] std::optional<std::string> encodeSchedule(const Schedule& schedule);

/// Any fault anywhere fails the whole document.
[[nodiscard]] Decoded<Schedule> decodeSchedule(std::string_view text);

} // namespace norvane
