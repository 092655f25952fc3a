#include "timemachine/number_text.h"

#include <charconv>
#include <limits>

namespace norvane {

std::optional<double> numberFromText(std::string_view text) {
    // from_chars rather than strtod: it does not follow the process's locale. It takes no "+" and no "0x".
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    if (text.starts_with('-') || text.starts_with('+'))
        return std::nullopt;
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    double value = 0;
    const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range) {
        const bool tiny = text.find(hexadecimal ? "p-" : "e-") != std::string_view::npos ||
                          text.find(hexadecimal ? "P-" : "E-") != std::string_view::npos;
        value = tiny ? 0 : std::numeric_limits<double>::infinity();
    }
    return negative ? -value : value;
}

std::optional<double> numberFromValue(const PropertyList* value) {
    if (!value)
        return std::nullopt;
    if (const std::string* text = value->string())
        return numberFromText(*text);
    return value->number();
}

} // namespace norvane
