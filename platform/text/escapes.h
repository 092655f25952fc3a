// Bytes that a text holds as a mark and digits.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace norvane {

/// The text with each mark that has so many digits behind it as the byte that they stand for; other marks
/// stay. "%" with two digits of base 16 is what addresses have.
[[nodiscard]] inline std::string withoutEscapes(std::string_view text, std::string_view mark,
                                                std::size_t digitCount, int base) {
    std::string plain;
    while (!text.empty()) {
        const std::string_view digits = text.substr(std::min(mark.size(), text.size()), digitCount);
        const char* const end = digits.data() + digits.size();
        unsigned code = 0;
        const bool escape = text.starts_with(mark) && digits.size() == digitCount &&
                            std::from_chars(digits.data(), end, code, base).ptr == end;
        plain += escape ? static_cast<char>(code) : text.front();
        text.remove_prefix(escape ? mark.size() + digitCount : 1);
    }
    return plain;
}

} // namespace norvane
