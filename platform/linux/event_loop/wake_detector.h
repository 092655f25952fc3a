// Telling each sleep of the machine once, from two witnesses of which each may be missing.
#pragma once

#include <cstdint>
#include <functional>

namespace norvane {

/// The clocks: CLOCK_BOOTTIME runs on during a sleep, CLOCK_MONOTONIC does not (clock_gettime(2)); their
/// difference is the time asleep since the machine started. The session: logind announces each sleep and each
/// wake. The two come in any order. Main thread.
class WakeDetector {
public:
    /// `timeAsleep` answers in nanoseconds.
    explicit WakeDetector(std::function<std::int64_t()> timeAsleep = timeAsleepByTheClocks);

    /// Calls `woke` once after each sleep, from within one of the functions below; an empty one ends that.
    void listen(std::function<void()> woke) { woke_ = std::move(woke); }

    /// The clocks may have moved against each other.
    void lookAtClocks();
    void sleepAnnounced() { toldByClocks_ = false; }
    void wakeAnnounced();

private:
    [[nodiscard]] static std::int64_t timeAsleepByTheClocks();
    void tell() const;

    const std::function<std::int64_t()> timeAsleep_;
    std::function<void()> woke_;
    std::int64_t asleep_;       // as of the last wake that was told
    bool toldByClocks_ = false; // the wake that logind has yet to announce
};

} // namespace norvane
