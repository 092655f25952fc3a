#include "scheduler_core/conditions_config.h"

namespace norvane {

const ConditionsConfig& ConditionsConfig::defaultConditions() {
    static const ConditionsConfig conditions;
    return conditions;
}

bool ConditionsConfig::hasAnyCondition() const {
    return requireAC || minBatteryPercent >= 1 || deferInLowPowerMode || deferWhileCameraOrMicInUse ||
           !blockedApps.empty() || maxLoadPerCore.has_value() || requireDestinationPresent.value_or(false);
}

} // namespace norvane
