// Reading numbers out of the tools' text.
#pragma once

#include <optional>
#include <string_view>

#include "platform/text/property_list.h"

namespace norvane {

/// The number that the whole text is, in the syntax of strtod(3) in the C locale; none when anything precedes
/// or follows it, white space included.
[[nodiscard]] std::optional<double> numberFromText(std::string_view text);

/// A text that is wholly a number, or a property-list number; none for everything else and for a missing
/// value.
[[nodiscard]] std::optional<double> numberFromValue(const PropertyList* value);

} // namespace norvane
