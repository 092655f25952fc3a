// Numbers and dates as text, the same in every place that reads or writes property lists. No locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text/property_list.h"
#include "platform/time/instant.h"

namespace norvane {

/// A decimal integer with an optional sign and nothing around it; none when it fits neither 64-bit type.
[[nodiscard]] std::optional<PropertyList> parseIntegerText(std::string_view text);

/// A decimal real with an optional sign and nothing around it, also "inf", "infinity" and "nan" in any case.
/// None when the magnitude does not fit a double.
[[nodiscard]] std::optional<double> parseRealText(std::string_view text);

/// The shortest text that reads back as the same number.
[[nodiscard]] std::string realText(double number);

/// UTC, proleptic Gregorian. The year has at least four digits and a sign before year 0 only.
struct DateText {
    std::string day;      ///< "2024-05-01"
    std::string time;     ///< "10:15:00"
    std::string fraction; ///< ".25", or nothing for a whole second.
};
[[nodiscard]] DateText dateText(Instant instant);

/// Reads "2024-05-01T10:15:00Z" with an optional fraction of 1 to 6 digits.
[[nodiscard]] std::optional<Instant> parseDateText(std::string_view text);

} // namespace norvane
