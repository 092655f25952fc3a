// Timers of the main thread's event loop (timerfd_create(2) on CLOCK_BOOTTIME).
#pragma once

#include "platform/timers.h"

namespace norvane {

/// The time that the machine sleeps counts: a timer that falls due meanwhile fires right after it wakes,
/// where a timer of Qt would be late by the length of the sleep. Needs a running Qt event loop on the thread
/// of use.
class QtTimers final : public Timers {
public:
    [[nodiscard]] std::unique_ptr<Timer> once(double intervalSeconds, double toleranceSeconds,
                                              std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> repeating(double intervalSeconds, double toleranceSeconds,
                                                   std::function<void()> action) override;
};

} // namespace norvane
