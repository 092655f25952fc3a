#include "scheduler_core/json_writer.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace norvane::json_writer {

Json number(double value) {
    constexpr double exactIntegers = 9007199254740992.0; // 2^53
    if (!std::isfinite(value))
        throw std::domain_error("JSON has no form for this number.");
    if (value == std::trunc(value) && std::abs(value) < exactIntegers)
        return static_cast<std::int64_t>(value);
    return value;
}

} // namespace norvane::json_writer
