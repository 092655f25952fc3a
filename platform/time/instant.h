// Instants and spans of time, the vocabulary of every folder.
#pragma once

#include <chrono>
#include <cmath>

namespace norvane {

/// An absolute point in time, microseconds since 1970-01-01 00:00 UTC. Range: about ±292,000 years.
using Instant = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

inline constexpr Instant distantPast = Instant::min();
inline constexpr Instant distantFuture = Instant::max();

/// Seconds from `from` to `to`; negative when `to` is earlier.
[[nodiscard]] inline double secondsBetween(Instant from, Instant to) {
    using Wide = std::chrono::duration<double, std::micro>;
    return (Wide(to.time_since_epoch()) - Wide(from.time_since_epoch())).count() / 1e6;
}

/// `instant` moved by `seconds`. Stored settings may hold any number, so the result stops at the ends of the
/// range instead of overflowing; not-a-number moves nothing.
[[nodiscard]] inline Instant plusSeconds(Instant instant, double seconds) {
    if (std::isnan(seconds))
        return instant;
    const double target = static_cast<double>(instant.time_since_epoch().count()) + seconds * 1e6;
    constexpr double limit = 9.2e18; // below 2^63, where the conversion is still defined
    if (target >= limit)
        return distantFuture;
    if (target <= -limit)
        return distantPast;
    return instant + std::chrono::microseconds(static_cast<std::chrono::microseconds::rep>(seconds * 1e6));
}

} // namespace norvane
