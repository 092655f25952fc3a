#include "platform/user_defaults.h"

#include "platform/text/property_list_scalars.h"
#include "platform/text/truncation.h"

namespace norvane {

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
        return value->truncatedInteger().value_or(0);
    if (const auto integer = parseIntegerText(*text))
        return integer->truncatedInteger().value_or(0);
    return truncated(parseRealText(*text).value_or(0)).value_or(0);
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
