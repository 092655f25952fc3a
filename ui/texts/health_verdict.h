// How windows head what they tell of the backups' health.
#pragma once

#include "controller/controller_state.h"
#include "ui/kit/theme.h"

namespace norvane {

struct HealthVerdict {
    const char* symbol; ///< Of ui/kit/symbols.
    Tint tint;
    const char* title; ///< English.
};

[[nodiscard]] HealthVerdict healthVerdict(BackupHealth health);

} // namespace norvane
