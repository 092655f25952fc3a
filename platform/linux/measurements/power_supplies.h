// The power supplies as the kernel lists them (Documentation/ABI/testing/sysfs-class-power).
#pragma once

#include <string>

#include "platform/condition_measurements.h"

namespace norvane {

/// Without `lowPowerMode`, of which the kernel knows nothing. `folder`: /sys/class/power_supply. On the
/// adapter when there is no battery, when one of several adapters is on line, or when nothing is said of any
/// adapter and the battery does not discharge.
[[nodiscard]] PowerState powerFromSupplies(const std::string& folder);

} // namespace norvane
