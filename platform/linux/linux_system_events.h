// Wake and clock changes.
#pragma once

#include "platform/system_events.h"

namespace norvane {

/// Wake: logind's PrepareForSleep(false) (org.freedesktop.login1(5)). Clock: a timerfd that is cancelled when
/// the wall clock is set (timerfd_create(2), TFD_TIMER_CANCEL_ON_SET). Without a system bus no wake is told;
/// timers that fell due during the sleep fire all the same.
class LinuxSystemEvents final : public SystemEvents {
public:
    [[nodiscard]] std::unique_ptr<Observation> observe(SystemEventHandlers handlers) override;
};

} // namespace norvane
