// Telling each sleep of the machine once, from two witnesses of which each may be missing.
#pragma once

#include <cstdint>

namespace norvane {

/// The clocks: CLOCK_BOOTTIME runs on during a sleep, CLOCK_MONOTONIC does not (clock_gettime(2)); their
/// difference, in nanoseconds, is the time asleep since the machine started. The session: logind announces
/// each sleep and each wake. The two come in any order. Each function that returns a boolean answers whether
/// a wake is to be told now.
class WakeDetector {
public:
    explicit WakeDetector(std::int64_t asleep) : asleep_(asleep) {}

    /// The clocks may have moved against each other.
    [[nodiscard]] bool clocksMoved(std::int64_t asleep);
    void sleepAnnounced() { toldByClocks_ = false; }
    [[nodiscard]] bool wakeAnnounced(std::int64_t asleep);

private:
    std::int64_t asleep_;       // as of the last wake that was told
    bool toldByClocks_ = false; // the wake that logind has yet to announce
};

} // namespace norvane
