// Upper case as Unicode has it.
#pragma once

#include <string>

namespace norvane {

/// The text, in UTF-8, with its first character in upper case, which may be more than one ("ß" becomes "SS").
[[nodiscard]] std::string capitalized(std::string text);

[[nodiscard]] bool isUpperCase(char32_t codePoint);

} // namespace norvane
