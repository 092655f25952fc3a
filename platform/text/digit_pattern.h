// Reading dates and names of a fixed form.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace norvane {

/// Whether the text has a digit wherever the pattern has a "d", and the pattern's character elsewhere:
/// "2024-05-01" fits "dddd-dd-dd".
[[nodiscard]] inline bool fitsPattern(std::string_view text, std::string_view pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char character, char wanted) {
                          return wanted == 'd' ? character >= '0' && character <= '9' : character == wanted;
                      });
}

/// The number that these digits are; at most nine.
[[nodiscard]] inline int digitsAt(std::string_view text, std::size_t start, std::size_t count) {
    int number = 0;
    for (const char digit : text.substr(start, count))
        number = number * 10 + (digit - '0');
    return number;
}

} // namespace norvane
