// Strict reading of stored JSON documents; for the readers of this folder only.
#pragma once

#include <cstdint>
#include <exception>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "scheduler_core/decoded.h"

namespace norvane::json_reader {

using Json = nlohmann::json;

/// What the functions below throw; it never leaves decodeDocument().
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One JSON text without byte order mark or zero byte, with unique keys in every object (as in I-JSON, RFC
/// 7493). The parser keeps its own stack, so that deep nesting does no harm.
[[nodiscard]] Json parse(std::string_view text);

[[nodiscard]] const Json& object(const Json& value);
[[nodiscard]] const Json& array(const Json& value);
[[nodiscard]] bool boolean(const Json& value);
[[nodiscard]] std::string string(const Json& value);
[[nodiscard]] double number(const Json& value);

/// A whole number that fits, however it is written: 9, 9.0 and 90e-1 are the same.
[[nodiscard]] std::int64_t integer(const Json& value);

/// The value under a required key; `value` must be an object.
[[nodiscard]] const Json& required(const Json& value, const char* key);

/// The value under an optional key; null when it is missing or JSON's null.
[[nodiscard]] const Json* optional(const Json& value, const char* key);

/// Runs `read` over the parsed text and turns whatever it throws into an error.
template <class T, class Read>
Decoded<T> decodeDocument(std::string_view text, const Read& read) {
    try {
        return {.value = read(parse(text)), .error = {}};
    } catch (const std::exception& error) {
        return {.value = std::nullopt, .error = error.what()};
    }
}

} // namespace norvane::json_reader
