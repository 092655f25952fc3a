// Property lists in the old-style (OpenStep) text format.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/text/property_list.h"

namespace norvane {

/// Comments as in C are skipped; every scalar reads as a string, <hex> as data.
[[nodiscard]] std::optional<PropertyList> parseTextPropertyList(std::string_view text);

/// As `defaults read` and `tmutil status` print it: keys in byte order, four spaces per level, strings quoted
/// where needed, no line feed at the end.
[[nodiscard]] std::string writeTextPropertyList(const PropertyList& list);

} // namespace norvane
