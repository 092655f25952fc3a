#include "platform/property_list_xml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

#include <pugixml.hpp>

#include "platform/property_list_scalars.h"
#include "platform/utf8.h"

namespace norvane {

namespace {

constexpr std::string_view xmlSpace = " \t\r\n";

// ---- Reading.

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(xmlSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(xmlSpace) - first + 1);
}

/// The character that "&name;" stands for. Only XML's own entities: those that a document declares could grow
/// without bound, and no property list needs them.
std::optional<char32_t> entity(std::string_view name) {
    constexpr std::array<std::pair<std::string_view, char32_t>, 5> named{
        {{"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}}};
    for (const auto& [known, character] : named) {
        if (name == known)
            return character;
    }
    if (!name.starts_with('#'))
        return std::nullopt;
    const bool hexadecimal = name.starts_with("#x");
    name.remove_prefix(hexadecimal ? 2 : 1);
    std::uint32_t number = 0;
    const char* const end = name.data() + name.size();
    const auto result = std::from_chars(name.data(), end, number, hexadecimal ? 16 : 10);
    const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
    if (result.ec != std::errc() || result.ptr != end || number == 0 || number > 0x10FFFF || isSurrogate)
        return std::nullopt;
    return static_cast<char32_t>(number);
}

bool appendWithEntities(std::string& text, std::string_view raw) {
    while (true) {
        const auto ampersand = raw.find('&');
        text.append(raw.substr(0, ampersand));
        if (ampersand == std::string_view::npos)
            return true;
        raw.remove_prefix(ampersand + 1);
        const auto semicolon = raw.find(';');
        if (semicolon == std::string_view::npos)
            return false;
        const auto character = entity(raw.substr(0, semicolon));
        if (!character)
            return false;
        appendUtf8(text, *character);
        raw.remove_prefix(semicolon + 1);
    }
}

/// All text inside an element; none when there is an element in it.
std::optional<std::string> textOf(const pugi::xml_node& element) {
    std::string text;
    for (const auto& child : element.children()) {
        if (child.type() == pugi::node_cdata)
            text += child.value();
        else if (child.type() != pugi::node_pcdata || !appendWithEntities(text, child.value()))
            return std::nullopt;
    }
    return text;
}

/// The elements inside an element; none when there is any other text than white space.
std::optional<std::vector<pugi::xml_node>> elementsOf(const pugi::xml_node& parent) {
    std::vector<pugi::xml_node> elements;
    for (const auto& child : parent.children()) {
        if (child.type() == pugi::node_element)
            elements.push_back(child);
        else if (child.type() != pugi::node_pcdata || !trimmed(child.value()).empty())
            return std::nullopt;
    }
    return elements;
}

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Base 64 (RFC 4648, section 4) with its padding; white space anywhere.
std::optional<PropertyList> readData(std::string_view text) {
    PropertyListData data;
    std::uint32_t bits = 0;
    int digits = 0; // of the present group of four, padding included
    int padding = 0;
    for (const char character : text) {
        if (xmlSpace.find(character) != std::string_view::npos)
            continue;
        std::size_t digit = 0;
        if (character == '=' && digits >= 2) {
            ++padding;
        } else {
            digit = base64Digits.find(character);
            if (padding > 0 || digit == std::string_view::npos)
                return std::nullopt;
        }
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        digits = (digits + 1) % 4;
        if (digits == 0) {
            for (int byte = 0; byte < 3 - padding; ++byte)
                data.bytes += static_cast<char>(bits >> (16 - 8 * byte) & 0xFF);
            bits = 0;
        }
    }
    if (digits != 0)
        return std::nullopt;
    return PropertyList{std::move(data)};
}

template <class Value>
std::optional<PropertyList> wrapped(std::optional<Value> value) {
    if (!value)
        return std::nullopt;
    return PropertyList{std::move(*value)};
}

std::optional<PropertyList> readElement(const pugi::xml_node& element, int depth);

std::optional<PropertyList> readArray(const pugi::xml_node& element, int depth) {
    const auto elements = elementsOf(element);
    if (!elements)
        return std::nullopt;
    PropertyList::Array array;
    for (const auto& child : *elements) {
        auto value = readElement(child, depth);
        if (!value)
            return std::nullopt;
        array.push_back(std::move(*value));
    }
    return PropertyList{std::move(array)};
}

std::optional<PropertyList> readDictionary(const pugi::xml_node& element, int depth) {
    const auto elements = elementsOf(element);
    if (!elements || elements->size() % 2 != 0)
        return std::nullopt;
    PropertyList::Dictionary dictionary;
    for (std::size_t index = 0; index < elements->size(); index += 2) {
        const auto& keyElement = (*elements)[index];
        if (std::string_view(keyElement.name()) != "key")
            return std::nullopt;
        auto key = textOf(keyElement);
        auto value = readElement((*elements)[index + 1], depth);
        if (!key || !value)
            return std::nullopt;
        dictionary.insert_or_assign(std::move(*key), std::move(*value));
    }
    return PropertyList{std::move(dictionary)};
}

std::optional<PropertyList> readScalar(std::string_view name, const std::string& text) {
    if (name == "string")
        return PropertyList{text};
    if (name == "integer")
        return parseIntegerText(trimmed(text));
    if (name == "real")
        return wrapped(parseRealText(trimmed(text)));
    if (name == "date")
        return wrapped(parseDateText(trimmed(text)));
    if (name == "data")
        return readData(text);
    if ((name == "true" || name == "false") && trimmed(text).empty())
        return PropertyList{name == "true"};
    return std::nullopt;
}

/// `depth` counts the containers around the element.
std::optional<PropertyList> readElement(const pugi::xml_node& element, int depth) {
    const std::string_view name = element.name();
    if (name == "dict" || name == "array") {
        if (depth == maxPropertyListDepth)
            return std::nullopt;
        return name == "dict" ? readDictionary(element, depth + 1) : readArray(element, depth + 1);
    }
    const auto text = textOf(element);
    return text ? readScalar(name, *text) : std::nullopt;
}

// ---- Writing.

void appendEscaped(std::string& out, std::string_view text) {
    for (const char character : text) {
        switch (character) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        default:
            // A bare carriage return would read back as a line feed; other control characters are no XML
            // text.
            if (static_cast<unsigned char>(character) < 0x20 && character != '\t' && character != '\n')
                out += "&#" + std::to_string(static_cast<int>(character)) + ";";
            else
                out += character;
        }
    }
}

std::string base64(std::string_view bytes) {
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - index);
        std::uint32_t bits = 0;
        for (std::size_t byte = 0; byte < 3; ++byte)
            bits = bits << 8 | (byte < count ? static_cast<unsigned char>(bytes[index + byte]) : 0U);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= count ? base64Digits[bits >> (18 - 6 * digit) & 0x3F] : '=';
    }
    return text;
}

class XmlWriter {
public:
    explicit XmlWriter(PlistDatePrecision dates) : dates_(dates) {}

    void write(const PropertyList& list) {
        std::visit([this](const auto& held) { writeValue(held); }, list.value);
    }

    std::string text;

private:
    void writeElement(std::string_view name, std::string_view content) {
        indent();
        text.append("<").append(name).append(">");
        appendEscaped(text, content);
        text.append("</").append(name).append(">\n");
    }

    void writeEmptyElement(std::string_view name) {
        indent();
        text.append("<").append(name).append("/>\n");
    }

    void writeValue(const std::string& value) { writeElement("string", value); }
    void writeValue(std::int64_t value) { writeElement("integer", std::to_string(value)); }
    void writeValue(std::uint64_t value) { writeElement("integer", std::to_string(value)); }
    void writeValue(double value) { writeElement("real", realText(value)); }
    void writeValue(bool value) { writeEmptyElement(value ? "true" : "false"); }

    void writeValue(Instant value) {
        const DateText date = dateText(value);
        const bool wholeSeconds = dates_ == PlistDatePrecision::wholeSeconds;
        writeElement("date", date.day + "T" + date.time + (wholeSeconds ? "" : date.fraction) + "Z");
    }

    void writeValue(const PropertyListData& value) {
        constexpr std::size_t lineLength = 76;
        const std::string digits = base64(value.bytes);
        std::string lines = "\n";
        for (std::size_t start = 0; start < digits.size(); start += lineLength)
            lines.append(level_, '\t').append(digits, start, lineLength).append("\n");
        writeElement("data", lines.append(level_, '\t'));
    }

    void writeValue(const PropertyList::Array& value) {
        writeContainer("array", value, [this](const PropertyList& element) { write(element); });
    }

    void writeValue(const PropertyList::Dictionary& value) {
        writeContainer("dict", value, [this](const auto& entry) {
            writeElement("key", entry.first);
            write(entry.second);
        });
    }

    template <class Container, class WriteEntry>
    void writeContainer(std::string_view name, const Container& container, WriteEntry writeEntry) {
        if (container.empty()) {
            writeEmptyElement(name);
            return;
        }
        indent();
        text.append("<").append(name).append(">\n");
        ++level_;
        for (const auto& entry : container)
            writeEntry(entry);
        --level_;
        indent();
        text.append("</").append(name).append(">\n");
    }

    void indent() { text.append(level_, '\t'); }

    const PlistDatePrecision dates_;
    std::size_t level_ = 0;
};

} // namespace

std::optional<PropertyList> parseXmlPropertyList(std::string_view text) {
    // The parser keeps text as C strings, which a zero byte would cut off.
    if (text.find('\0') != std::string_view::npos || !isValidUtf8(text))
        return std::nullopt;
    // As a fragment, so that text around the root and a second root are seen and refused. Entities stay as
    // they are written: textOf() is stricter with them than the parser.
    constexpr unsigned options =
        pugi::parse_cdata | pugi::parse_eol | pugi::parse_ws_pcdata | pugi::parse_fragment;
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8))
        return std::nullopt;
    const auto roots = elementsOf(document);
    if (!roots || roots->size() != 1 || std::string_view(roots->front().name()) != "plist")
        return std::nullopt;
    const auto values = elementsOf(roots->front());
    if (!values || values->size() != 1)
        return std::nullopt;
    return readElement(values->front(), 0);
}

std::string writeXmlPropertyList(const PropertyList& list, PlistDatePrecision dates) {
    XmlWriter writer(dates);
    writer.text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                  "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                  "<plist version=\"1.0\">\n";
    writer.write(list);
    return writer.text + "</plist>\n";
}

} // namespace norvane
