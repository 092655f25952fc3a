#include "timemachine/number_text.h"

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <string>

namespace norvane {

std::optional<double> numberFromText(std::string_view text) {
    // strtod(3) skips white space and follows the process's locale.
    if (text.empty() || std::isspace(static_cast<unsigned char>(text.front())) != 0)
        return std::nullopt;
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string copy(text); // ends with a zero byte
    char* end = nullptr;
    const double value = strtod_l(copy.c_str(), &end, cLocale);
    return end == copy.c_str() + copy.size() ? std::optional(value) : std::nullopt;
}

std::optional<double> numberFromValue(const PropertyList* value) {
    if (!value)
        return std::nullopt;
    if (const std::string* text = value->string())
        return numberFromText(*text);
    return value->number();
}

} // namespace norvane
