#include "platform/user_defaults.h"

#include <cmath>

#include "platform/property_list_scalars.h"

namespace norvane {

namespace {

/// The number without its fraction; 0 when that does not fit.
std::int64_t truncated(const PropertyList& list) {
    if (const auto exact = list.exactInteger())
        return *exact;
    return PropertyList{std::trunc(list.number().value_or(0))}.exactInteger().value_or(0);
}

} // namespace

std::optional<std::string> UserDefaults::data(const std::string& key) const {
    const auto value = object(key);
    if (!value || !value->data())
        return std::nullopt;
    return value->data()->bytes;
}

std::optional<Instant> UserDefaults::date(const std::string& key) const {
    const auto value = object(key);
    if (!value || !value->date())
        return std::nullopt;
    return *value->date();
}

std::int64_t UserDefaults::integer(const std::string& key) const {
    const auto value = object(key);
    if (!value)
        return 0;
    const std::string* const text = value->string();
    if (!text)
        return truncated(*value);
    if (const auto integer = parseIntegerText(*text))
        return truncated(*integer);
    return truncated(PropertyList{parseRealText(*text).value_or(0)});
}

bool UserDefaults::boolean(const std::string& key) const {
    const auto value = object(key);
    if (!value)
        return false;
    if (const std::string* const text = value->string())
        return *text == "1" || *text == "YES" || *text == "true";
    return value->number().value_or(0) != 0;
}

} // namespace norvane
