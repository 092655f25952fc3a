#include "platform/text/property_list.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"
#include "platform/text/truncation.h"

namespace norvane {

namespace {

std::optional<std::int64_t> wholeReal(double real) {
    return real == std::trunc(real) ? truncated(real) : std::nullopt;
}

} // namespace

std::optional<double> PropertyList::number() const {
    return std::visit(
        [](const auto& held) -> std::optional<double> {
            if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(held)>>)
                return static_cast<double>(held);
            else
                return std::nullopt;
        },
        value);
}

std::optional<std::int64_t> PropertyList::exactInteger() const {
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return *integer;
    if (const auto* large = std::get_if<std::uint64_t>(&value)) {
        if (*large > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return std::nullopt;
        return static_cast<std::int64_t>(*large);
    }
    if (const auto* boolean = std::get_if<bool>(&value))
        return *boolean ? 1 : 0;
    if (const auto* real = std::get_if<double>(&value))
        return wholeReal(*real);
    return std::nullopt;
}

std::optional<std::int64_t> PropertyList::truncatedInteger() const {
    if (const auto exact = exactInteger())
        return exact;
    const auto real = number();
    return real ? truncated(*real) : std::nullopt;
}

const PropertyList* PropertyList::find(std::string_view key) const {
    const Dictionary* const entries = dictionary();
    if (!entries)
        return nullptr;
    const auto entry = entries->find(key);
    return entry == entries->end() ? nullptr : &entry->second;
}

std::optional<PropertyList> parsePropertyList(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    const auto start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos)
        return std::nullopt;
    // An old-style text may begin with "<" as well: with data, whose digits are hexadecimal.
    const std::string_view content = text.substr(start);
    if (content.starts_with("<?") || content.starts_with("<!") || content.starts_with("<p"))
        return parseXmlPropertyList(text); // whole: where it starts matters
    return parseTextPropertyList(content);
}

} // namespace norvane
