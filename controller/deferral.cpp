#include "controller/deferral.h"

#include <algorithm>
#include <utility>

namespace norvane {

std::optional<DeferralInfo> deferral(const std::optional<DeferralInfo>& before,
                                     std::vector<std::string> reasons, const ConditionsConfig& conditions,
                                     Instant now) {
    const Instant originalDue = before ? before->originalDue : now;
    const Instant forceAt = plusSeconds(originalDue, conditions.maxDeferralHours * 3600);
    if (now >= forceAt)
        return std::nullopt;
    const Instant recheck = plusSeconds(now, static_cast<double>(conditions.recheckMinutes) * 60);
    return DeferralInfo{std::move(reasons), originalDue, forceAt, std::min(recheck, forceAt)};
}

} // namespace norvane
