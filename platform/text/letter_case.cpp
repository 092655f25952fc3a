#include "platform/text/letter_case.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "platform/text/utf8.h"

namespace norvane {

std::string capitalized(std::string text) {
    constexpr char32_t replacement = 0xFFFD; // for what is no character
    std::size_t rest = 0;
    if (text.empty() || nextCodePoint(text, rest) == replacement)
        return text;
    std::string upper;
    icu::UnicodeString::fromUTF8(text.substr(0, rest)).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
    return text.replace(0, rest, upper);
}

bool isUpperCase(char32_t codePoint) { return u_isUUppercase(static_cast<UChar32>(codePoint)) != 0; }

} // namespace norvane
