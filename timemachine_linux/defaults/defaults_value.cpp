#include "timemachine_linux/defaults/defaults_value.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/text/property_list_scalars.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

namespace {

template <class Value>
std::optional<PropertyList> wrapped(std::optional<Value> value) {
    if (!value)
        return std::nullopt;
    return PropertyList{std::move(*value)};
}

std::optional<PropertyList> readBoolean(const std::string& argument) {
    std::string text = argument;
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    if (text == "true" || text == "yes" || text == "1")
        return PropertyList{true};
    if (text == "false" || text == "no" || text == "0")
        return PropertyList{false};
    return std::nullopt;
}

/// "2024-05-01T10:15:00Z", or as `defaults read` prints it: "2024-05-01 10:15:00 +0000".
std::optional<Instant> readDate(std::string text) {
    constexpr std::string_view zone = " +0000";
    if (text.ends_with(zone)) {
        text.replace(text.size() - zone.size(), zone.size(), "Z");
        if (const auto space = text.find(' '); space != std::string::npos)
            text[space] = 'T';
    }
    return parseDateText(text);
}

std::optional<PropertyList> readData(const std::string& hexDigits) {
    if (hexDigits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return std::nullopt;
    return parsePropertyList("<" + hexDigits + ">");
}

/// A flag that announces the type of the one argument behind it.
struct TypeFlag {
    std::string_view name;
    std::string_view description;
    std::optional<PropertyList> (*read)(const std::string&);
};

std::optional<PropertyList> readInteger(const std::string& text) { return parseIntegerText(text); }

const std::array<TypeFlag, 8> typeFlags = {{
    {"-string", "a string", [](const std::string& text) { return std::optional(PropertyList{text}); }},
    {"-int", "an integer", readInteger},
    {"-integer", "an integer", readInteger},
    {"-float", "a number", [](const std::string& text) { return wrapped(parseRealText(text)); }},
    {"-bool", "a boolean", readBoolean},
    {"-boolean", "a boolean", readBoolean},
    {"-date", "a date", [](const std::string& text) { return wrapped(readDate(text)); }},
    {"-data", "a row of hexadecimal bytes", readData},
}};

class ValueReader {
public:
    explicit ValueReader(std::span<const std::string> arguments) : rest_(arguments) {}

    /// None after an error.
    std::optional<PropertyList> readAll() {
        if (!rest_.empty() && (rest_.front() == "-array" || rest_.front() == "-array-add"))
            return readArray();
        if (!rest_.empty() && rest_.front() == "-dict")
            return readDictionary();
        auto value = readOne();
        if (value && !rest_.empty())
            return fail("Unexpected argument " + rest_.front());
        return value;
    }

    std::string error;

private:
    std::optional<PropertyList> fail(std::string reason) {
        error = std::move(reason);
        return std::nullopt;
    }

    const std::string& take() {
        const std::string& argument = rest_.front();
        rest_ = rest_.subspan(1);
        return argument;
    }

    std::optional<PropertyList> readOne() {
        if (rest_.empty())
            return fail("A value is missing");
        const std::string& argument = take();
        const auto* const flag = std::find_if(typeFlags.begin(), typeFlags.end(),
                                              [&](const TypeFlag& known) { return known.name == argument; });
        if (flag != typeFlags.end())
            return readTyped(*flag);
        // Only what cannot be meant as plain text is read as a property list.
        if (argument.empty() || std::string_view("{(<\"'").find(argument.front()) == std::string_view::npos)
            return PropertyList{argument};
        auto value = parsePropertyListArgument(argument);
        return value ? value : fail("Could not parse: " + argument);
    }

    std::optional<PropertyList> readTyped(const TypeFlag& flag) {
        if (rest_.empty())
            return fail("A value is missing after " + std::string(flag.name));
        const std::string& text = take();
        auto value = flag.read(text);
        return value ? value : fail("\"" + text + "\" is not " + std::string(flag.description));
    }

    std::optional<PropertyList> readArray() {
        take();
        PropertyList::Array array;
        while (!rest_.empty()) {
            auto element = readOne();
            if (!element)
                return std::nullopt;
            array.push_back(std::move(*element));
        }
        return PropertyList{std::move(array)};
    }

    std::optional<PropertyList> readDictionary() {
        take();
        PropertyList::Dictionary dictionary;
        while (!rest_.empty()) {
            const std::string& key = take();
            auto value = readOne();
            if (!value)
                return std::nullopt;
            dictionary.insert_or_assign(key, std::move(*value));
        }
        return PropertyList{std::move(dictionary)};
    }

    std::span<const std::string> rest_;
};

} // namespace

Result<DefaultsValue> parseDefaultsValue(std::span<const std::string> arguments) {
    ValueReader reader(arguments);
    auto value = reader.readAll();
    if (!value)
        return Failure{reader.error};
    return DefaultsValue{std::move(*value), !arguments.empty() && arguments.front() == "-array-add"};
}

std::optional<PropertyList> parsePropertyListArgument(const std::string& text) {
    if (auto list = parsePropertyList(text))
        return list;
    return parseXmlPropertyList("<plist>" + text + "</plist>");
}

} // namespace norvane
