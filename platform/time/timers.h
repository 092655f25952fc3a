// One-shot and repeating timers of the main thread.
#pragma once

#include <functional>
#include <memory>

namespace norvane {

/// A running timer. Destroying it cancels it: its action will not run any more. It may be destroyed from
/// within its own action.
class Timer {
public:
    virtual ~Timer() = default;
};

/// Main thread only; actions run on the main thread, never from within the call that makes the timer. While
/// the machine sleeps, timers stand still; the wake (platform/system_events.h) is told before any action that
/// falls due after it.
class Timers {
public:
    virtual ~Timers() = default;

    /// Runs `action` once, not earlier than `intervalSeconds` from now and at most `toleranceSeconds` later
    /// when the system is not busy. The interval is at least 0.
    [[nodiscard]] virtual std::unique_ptr<Timer> once(double intervalSeconds, double toleranceSeconds,
                                                      std::function<void()> action) = 0;

    /// Runs `action` every `intervalSeconds`, each time with the same tolerance, until destroyed.
    [[nodiscard]] virtual std::unique_ptr<Timer> repeating(double intervalSeconds, double toleranceSeconds,
                                                           std::function<void()> action) = 0;
};

} // namespace norvane
