// A schedule in one line.
#pragma once

#include <string>

#include "platform/translator.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// The first rule alone, in the user's language: "Every 4 hours", "Daily at 9:05, 14:30",
/// "Weekly · 5 backups/week".
[[nodiscard]] std::string scheduleSummary(const Schedule& schedule, const Translator& texts);

} // namespace norvane
