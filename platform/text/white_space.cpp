#include "platform/text/white_space.h"

#include <array>

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

} // namespace norvane
