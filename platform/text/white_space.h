// White space as Unicode has it, in UTF-8.
#pragma once

#include <string_view>

namespace norvane {

/// The text without spaces, tabs and other horizontal white space (Unicode category Zs) at both ends.
[[nodiscard]] std::string_view trimHorizontal(std::string_view text);

/// The text without white space and line breaks at both ends.
[[nodiscard]] std::string_view trimWhitespace(std::string_view text);

} // namespace norvane
