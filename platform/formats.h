// Dates, times and quantities as the user's locale writes them: the one formatting place.
#pragma once

#include <cstdint>
#include <string>

#include "platform/instant.h"

namespace norvane {

class Formats {
public:
    virtual ~Formats() = default;

    /// Time without date, short, in the user's time zone: "9:07 AM".
    [[nodiscard]] virtual std::string shortTime(Instant instant) const = 0;

    /// Abbreviated date and short time: "Mar 5, 2026, 9:07 AM".
    [[nodiscard]] virtual std::string dateAndTime(Instant instant) const = 0;

    /// A byte count as file managers show it, decimal units: "5.12 GB".
    [[nodiscard]] virtual std::string byteCount(std::int64_t bytes) const = 0;
};

} // namespace norvane
