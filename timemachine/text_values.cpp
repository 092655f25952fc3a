#include "timemachine/text_values.h"

#include <array>
#include <charconv>
#include <limits>

namespace norvane {

namespace {

/// Unicode's space separators beside U+0020, in UTF-8, and the tab.
constexpr std::array<std::string_view, 18> horizontalSpaces = {
    " ",      "\t",     "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u202F", "\u205F", "\u3000",
};
constexpr std::array<std::string_view, 7> lineBreaks = {"\n", "\r", "\v", "\f", "\u0085", "\u2028", "\u2029"};

template <class Table>
bool dropFirst(std::string_view& text, const Table& table) {
    for (std::string_view space : table) {
        if (text.starts_with(space)) {
            text.remove_prefix(space.size());
            return true;
        }
    }
    return false;
}

template <class Table>
bool dropLast(std::string_view& text, const Table& table) {
    for (std::string_view space : table) {
        if (text.ends_with(space)) {
            text.remove_suffix(space.size());
            return true;
        }
    }
    return false;
}

} // namespace

std::string_view trimHorizontal(std::string_view text) {
    while (dropFirst(text, horizontalSpaces)) {
    }
    while (dropLast(text, horizontalSpaces)) {
    }
    return text;
}

std::string_view trimWhitespace(std::string_view text) {
    while (dropFirst(text, horizontalSpaces) || dropFirst(text, lineBreaks)) {
    }
    while (dropLast(text, horizontalSpaces) || dropLast(text, lineBreaks)) {
    }
    return text;
}

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
