// The machine's present state, as far as it can hold back a backup.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace norvane {

struct PowerState {
    bool onAC = true;                           ///< A machine without a battery counts as on the adapter.
    std::optional<std::int64_t> batteryPercent; ///< None: no battery, or unknown.
    bool lowPowerMode = false;

    bool operator==(const PowerState&) const = default;
};

/// All false when nothing can be learned.
struct MediaUse {
    bool camera = false;
    bool microphone = false; ///< Devices that only play never count.
    bool screen = false;     ///< The screen is shared or recorded.

    bool operator==(const MediaUse&) const = default;
};

/// Every call measures afresh, is quick, and gives the value that defers nothing when the measurement fails.
/// Main thread.
class ConditionMeasurements {
public:
    virtual ~ConditionMeasurements() = default;

    [[nodiscard]] virtual PowerState powerState() = 0;

    /// All at once, because one look at the media server tells most of it; where a camera is in use, the
    /// others need not be looked for.
    [[nodiscard]] virtual MediaUse mediaUse() = 0;

    /// The 1-minute load average divided by the number of online processors; none when unknown.
    [[nodiscard]] virtual std::optional<double> loadPerCore() = 0;

    /// Identifiers of the user's running applications (desktop-file ids without ".desktop").
    [[nodiscard]] virtual std::set<std::string> runningApplications() = 0;
};

} // namespace norvane
