#include "platform/linux/linux_measurements.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <unistd.h>

namespace norvane {

std::optional<double> LinuxMeasurements::loadPerCore() {
    std::array<double, 3> averages{};
    if (getloadavg(averages.data(), static_cast<int>(averages.size())) < 1)
        return std::nullopt;
    return averages[0] / static_cast<double>(std::max(sysconf(_SC_NPROCESSORS_ONLN), 1L));
}

} // namespace norvane
