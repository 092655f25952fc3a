// One action after a burst of requests for it.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/time/timers.h"

namespace norvane {

/// Main thread only. Destroying it drops what is pending.
class Debouncer {
public:
    explicit Debouncer(Timers& timers) : timers_(timers) {}

    /// Runs `action` after the delay, in place of one that is still pending.
    void scheduleAfter(double seconds, std::function<void()> action) {
        task_ = timers_.once(seconds, 0, [this, action = std::move(action)] {
            const auto finished = std::move(task_); // so that the action may ask again
            action();
        });
    }

    /// Runs `action` when what is going on now is done, once for any number of requests until then.
    void scheduleSoon(std::function<void()> action) {
        if (!pending())
            scheduleAfter(0, std::move(action));
    }

    void cancel() { task_.reset(); }

    [[nodiscard]] bool pending() const { return task_ != nullptr; }

private:
    Timers& timers_;
    std::unique_ptr<Timer> task_;
};

} // namespace norvane
