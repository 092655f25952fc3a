// Writing stored JSON documents; for the writers of this folder only.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace norvane::json_writer {

/// Keeps the keys in the order in which they are written.
using Json = nlohmann::ordered_json;

/// A whole number is written without fraction. Throws std::domain_error when the number is not finite.
[[nodiscard]] Json number(double value);

/// The text without white space; none when `build` throws or a string is not UTF-8.
template <class Build>
std::optional<std::string> encodeDocument(const Build& build) {
    try {
        return build().dump();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace norvane::json_writer
