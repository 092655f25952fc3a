#include "app/single_instance.h"

#include <algorithm>

namespace norvane {

namespace {

constexpr int maxWaits = 8;
constexpr double waitSeconds = 0.25;

} // namespace

std::optional<OlderInstance> olderInstance(ProgramInstances& instances,
                                           const std::function<void(double)>& sleep) {
    if (!instances.identified())
        return std::nullopt;
    std::vector<std::int64_t> others = instances.others();
    for (int waits = 0; waits < maxWaits && !others.empty(); ++waits) {
        sleep(waitSeconds);
        others = instances.others();
    }
    if (others.empty())
        return std::nullopt;
    // The oldest stays: process ids grow, until they wrap.
    const std::int64_t oldest = *std::min_element(others.begin(), others.end());
    if (oldest > instances.ownProcessId())
        return std::nullopt;
    return OlderInstance{oldest, instances.activate(oldest)};
}

} // namespace norvane
