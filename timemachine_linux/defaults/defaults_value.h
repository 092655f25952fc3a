// The values that a person gives to `defaults write` (defaults(1)).
#pragma once

#include <optional>
#include <span>
#include <string>

#include "platform/text/property_list.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

struct DefaultsValue {
    PropertyList value;
    bool appends = false; ///< An array whose elements are to be added to the stored ones.
};

/// Reads one value: "-int 5", "-array a -bool YES", "-dict key value …", a property list in either text
/// format, or a plain string. A failure is one sentence without a full stop.
[[nodiscard]] Result<DefaultsValue> parseDefaultsValue(std::span<const std::string> arguments);

/// A property list in either format; XML also without the <plist> element around it.
[[nodiscard]] std::optional<PropertyList> parsePropertyListArgument(const std::string& text);

} // namespace norvane
