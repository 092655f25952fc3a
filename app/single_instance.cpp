#include "app/single_instance.h"

#include <algorithm>

namespace norvane {

namespace {

constexpr int maxWaits = 8;
constexpr double waitSeconds = 0.25;

} // namespace

bool becomesTheInstance(ProgramInstances& instances, const std::function<void(double)>& sleep) {
    if (!instances.identified())
        return true;
    std::vector<std::int64_t> others = instances.others();
    for (int waits = 0; waits < maxWaits && !others.empty(); ++waits) {
        sleep(waitSeconds);
        others = instances.others();
    }
    if (others.empty())
        return true;
    // The oldest stays: process ids grow, until they wrap.
    const std::int64_t oldest = *std::min_element(others.begin(), others.end());
    if (oldest > instances.ownProcessId())
        return true;
    instances.activate(oldest);
    return false;
}

} // namespace norvane
