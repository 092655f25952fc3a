// Wake, clock changes and the accent colour.
#pragma once

#include "platform/appearance.h"
#include "platform/linux/bus/bus_link.h"
#include "platform/linux/event_loop/wake_detector.h"
#include "platform/system_events.h"

namespace norvane {

/// Wake: logind's PrepareForSleep(false) (org.freedesktop.login1(5)), and without logind the clocks
/// themselves. Clock: a timerfd that is cancelled when the wall clock is set, and after a sleep
/// (timerfd_create(2), TFD_TIMER_CANCEL_ON_SET). Nothing polls.
class LinuxSystemEvents final : public SystemEvents {
public:
    /// All must outlive this and its observations, of which there is one at a time.
    LinuxSystemEvents(BusLink& systemBus, WakeDetector& wakeDetector, Appearance& appearance)
        : systemBus_(systemBus), wakeDetector_(wakeDetector), appearance_(appearance) {}

    [[nodiscard]] std::unique_ptr<Observation> observe(SystemEventHandlers handlers) override;

private:
    BusLink& systemBus_;
    WakeDetector& wakeDetector_;
    Appearance& appearance_;
};

} // namespace norvane
