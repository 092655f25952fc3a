// The time of day. Nothing outside platform/ asks the system for it.
#pragma once

#include "platform/time/instant.h"

namespace norvane {

class Clock {
public:
    virtual ~Clock() = default;

    /// The current wall-clock instant. Any thread. May step forwards or backwards between two calls.
    [[nodiscard]] virtual Instant now() const = 0;
};

} // namespace norvane
