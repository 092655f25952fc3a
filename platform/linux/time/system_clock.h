// The system's time of day.
#pragma once

#include "platform/time/clock.h"

namespace norvane {

class SystemClock final : public Clock {
public:
    [[nodiscard]] Instant now() const override {
        return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
    }
};

} // namespace norvane
