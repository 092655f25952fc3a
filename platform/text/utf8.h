// UTF-8 text, code point by code point.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace norvane {

/// Whether the bytes are well-formed UTF-8 (Unicode 15, table 3-7): no overlong forms, no surrogates.
[[nodiscard]] bool isValidUtf8(std::string_view text);

/// Adds a code point; surrogates and numbers past U+10FFFF are not allowed.
void appendUtf8(std::string& text, char32_t codePoint);

/// The code point at `index`, which moves behind it; U+FFFD for bytes that are not UTF-8. `index` is inside
/// the text.
[[nodiscard]] char32_t nextCodePoint(std::string_view text, std::size_t& index);

} // namespace norvane
