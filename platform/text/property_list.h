// Property lists: the value type, and reading a text of either format.
//
// Formats: XML as described by Apple's PropertyList-1.0.dtd; the older OpenStep text format of
// Foundation's NSPropertyList (braces, "=", ";", parentheses, <hex data>), in which every scalar is a string.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/time/instant.h"

namespace norvane {

/// Bytes, as a type of their own beside text.
struct PropertyListData {
    std::string bytes;

    bool operator==(const PropertyListData&) const = default;
};

/// One value of a property list. A plain value: copy it, compare it, read it from any thread.
struct PropertyList {
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    /// An integer is held unsigned only when it does not fit the signed type.
    using Value = std::variant<std::string, std::int64_t, std::uint64_t, double, bool, Instant,
                               PropertyListData, Array, Dictionary>;

    Value value;

    bool operator==(const PropertyList&) const = default;

    [[nodiscard]] const std::string* string() const { return std::get_if<std::string>(&value); }
    [[nodiscard]] const Instant* date() const { return std::get_if<Instant>(&value); }
    [[nodiscard]] const PropertyListData* data() const { return std::get_if<PropertyListData>(&value); }
    [[nodiscard]] const Array* array() const { return std::get_if<Array>(&value); }
    [[nodiscard]] const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value); }

    /// The value of an integer, real or boolean as a double; none for every other type.
    [[nodiscard]] std::optional<double> number() const;

    /// The value of an integer, boolean or whole real that is exactly representable; none otherwise.
    [[nodiscard]] std::optional<std::int64_t> exactInteger() const;

    /// The value of an integer, real or boolean without its fraction; none when that does not fit, and for
    /// every other type.
    [[nodiscard]] std::optional<std::int64_t> truncatedInteger() const;

    /// The entry of a dictionary; null when this is no dictionary or the key is missing.
    [[nodiscard]] const PropertyList* find(std::string_view key) const;
};

/// Deeper nesting than this is refused by both readers, so that no text can exhaust the stack.
inline constexpr int maxPropertyListDepth = 512;

/// Reads a property list in either format. Any error, anywhere, gives none; there is no partial result.
[[nodiscard]] std::optional<PropertyList> parsePropertyList(std::string_view text);

} // namespace norvane
