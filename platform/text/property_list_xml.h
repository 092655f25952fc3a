// Property lists as XML (Apple's PropertyList-1.0.dtd).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/text/property_list.h"

namespace norvane {

/// How dates are written. Foundation's own files and tools know whole seconds only.
enum class PlistDatePrecision { wholeSeconds, microseconds };

[[nodiscard]] std::optional<PropertyList> parseXmlPropertyList(std::string_view text);

/// The document with its header, keys in byte order, one tab per level, a line feed at the end.
[[nodiscard]] std::string writeXmlPropertyList(const PropertyList& list,
                                               PlistDatePrecision dates = PlistDatePrecision::microseconds);

} // namespace norvane
