// Timers of the main thread's event loop (timerfd_create(2) on CLOCK_MONOTONIC).
#pragma once

#include "platform/time/timers.h"

namespace norvane {

/// They stand still while the machine sleeps. Needs a running Qt event loop on the thread of use.
class QtTimers final : public Timers {
public:
    /// `beforeActions` runs each time before the action of a timer that fell due; what it cancels does not
    /// run.
    explicit QtTimers(std::function<void()> beforeActions = {}) : beforeActions_(std::move(beforeActions)) {}

    [[nodiscard]] std::unique_ptr<Timer> once(double intervalSeconds, double toleranceSeconds,
                                              std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> repeating(double intervalSeconds, double toleranceSeconds,
                                                   std::function<void()> action) override;

private:
    const std::function<void()> beforeActions_;
};

} // namespace norvane
