// Under which circumstances a scheduled backup is deferred: plain values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

/// An application whose running defers backups.
struct BlockedApp {
    std::string
        bundleID;     ///< The identifier among running applications: a desktop-file id without ".desktop".
    std::string name; ///< For the user.

    bool operator==(const BlockedApp&) const = default;
};

struct ConditionsConfig {
    bool requireAC = false;             ///< Defer on battery power.
    std::int64_t minBatteryPercent = 0; ///< Defer below this charge; 0 or less: never.
    bool deferInLowPowerMode = false;
    bool deferWhileCameraOrMicInUse = false;
    std::vector<BlockedApp> blockedApps;           ///< Defer while any of these runs.
    double maxDeferralHours = 4;                   ///< Deferred for so long, a backup runs regardless.
    std::int64_t recheckMinutes = 5;               ///< How often a deferred backup looks again.
    std::optional<double> maxLoadPerCore;          ///< Defer above this processor load per core; none: never.
    std::optional<bool> requireDestinationPresent; ///< Defer while no destination is there; none: off.

    [[nodiscard]] static const ConditionsConfig& defaultConditions();

    /// Whether anything at all can defer a backup.
    [[nodiscard]] bool hasAnyCondition() const;

    bool operator==(const ConditionsConfig&) const = default;
};

} // namespace norvane

template <>
struct std::hash<norvane::BlockedApp> {
    std::size_t operator()(const norvane::BlockedApp& app) const noexcept {
        const std::hash<std::string> hashOf;
        return hashOf(app.bundleID) * 31 + hashOf(app.name);
    }
};
