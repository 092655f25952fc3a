// The values that a person gives to `defaults write` (defaults(1)).
#pragma once

#include <span>
#include <string>
#include <variant>

#include "platform/text/property_list.h"

namespace norvane {

struct DefaultsValue {
    PropertyList value;
    bool appends = false; ///< An array whose elements are to be added to the stored ones.
};

/// Why the arguments are no value: one sentence without a full stop.
struct DefaultsValueError {
    std::string reason;
};

/// Reads one value: "-int 5", "-array a -bool YES", "-dict key value …", a property list in either text
/// format, or a plain string.
[[nodiscard]] std::variant<DefaultsValue, DefaultsValueError>
parseDefaultsValue(std::span<const std::string> arguments);

/// A property list in either format; XML also without the <plist> element around it.
[[nodiscard]] std::optional<PropertyList> parsePropertyListArgument(const std::string& text);

} // namespace norvane
