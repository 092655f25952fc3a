// From a real number to a whole one, where the language leaves too large numbers undefined.
#pragma once

#include <cstdint>
#include <optional>

namespace norvane {

/// The number without its fraction; none when that does not fit, and for NaN.
[[nodiscard]] constexpr std::optional<std::int64_t> truncated(double number) {
    constexpr double limit = 9223372036854775808.0; // 2^63, the first double past the range
    if (!(number >= -limit && number < limit))
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

} // namespace norvane
