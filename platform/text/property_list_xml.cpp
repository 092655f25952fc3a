#include "platform/text/property_list_xml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <pugixml.hpp>
#include <utility>

#include "platform/text/property_list_scalars.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD; // for what cannot be written

// ---- Reading.

constexpr bool isXmlSpace(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isXmlSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isXmlSpace(text.back()))
        text.remove_suffix(1);
    return text;
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

/// Reads all text inside an element. False: there is an element in it.
bool readText(const pugi::xml_node& element, std::string& text) {
    for (auto child = element.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_cdata)
            text += child.value();
        else if (child.type() != pugi::node_pcdata || !appendWithEntities(text, child.value()))
            return false;
    }
    return true;
}

bool hasDoubledAttribute(const pugi::xml_node& element) {
    for (auto attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        // attribute() finds the first of this name.
        if (element.attribute(attribute.name()) != attribute)
            return true;
    }
    return false;
}

/// Hands each element inside an element to `read` until that returns false. False: it did, or there is any
/// other text than white space.
template <class Read>
bool readElements(const pugi::xml_node& parent, Read read) {
    for (auto child = parent.first_child(); child; child = child.next_sibling()) {
        const bool good = child.type() == pugi::node_element
                              ? !hasDoubledAttribute(child) && read(child)
                              : child.type() == pugi::node_pcdata && trimmed(child.value()).empty();
        if (!good)
            return false;
    }
    return true;
}

/// The one element inside an element that holds nothing else; a null node when that is not so.
pugi::xml_node onlyElement(const pugi::xml_node& parent) {
    pugi::xml_node only;
    const bool good = readElements(parent, [&](const pugi::xml_node& child) {
        const bool first = !only;
        only = child;
        return first;
    });
    return good ? only : pugi::xml_node();
}

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Base 64 (RFC 4648, section 4) with its padding; white space anywhere.
std::optional<PropertyListData> dataFrom(std::string_view text) {
    PropertyListData data;
    std::uint32_t bits = 0;
    int digits = 0; // of the present group of four, padding included
    int padding = 0;
    for (const char character : text) {
        if (isXmlSpace(character))
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
    return data;
}

bool readElement(const pugi::xml_node& element, PropertyList& list, int depth);

bool readArray(const pugi::xml_node& element, PropertyList::Array& array, int depth) {
    return readElements(element, [&](const pugi::xml_node& child) {
        return readElement(child, array.emplace_back(), depth);
    });
}

bool readDictionary(const pugi::xml_node& element, PropertyList::Dictionary& dictionary, int depth) {
    PropertyList* place = nullptr; // for the value of the key before it
    const bool good = readElements(element, [&](const pugi::xml_node& child) {
        if (place)
            return readElement(child, *std::exchange(place, nullptr), depth);
        std::string key;
        if (std::string_view(child.name()) != "key" || !readText(child, key))
            return false;
        place = &dictionary[std::move(key)];
        return true;
    });
    return good && !place;
}

template <class Value>
bool assign(PropertyList& list, std::optional<Value> value) {
    if (value)
        list = PropertyList{std::move(*value)};
    return value.has_value();
}

bool readScalar(std::string_view name, std::string text, PropertyList& list) {
    if (name == "string")
        return assign(list, std::optional(std::move(text)));
    if (name == "integer")
        return assign(list, parseIntegerText(trimmed(text)));
    if (name == "real")
        return assign(list, parseRealText(trimmed(text)));
    if (name == "date")
        return assign(list, parseDateText(trimmed(text)));
    if (name == "data")
        return assign(list, dataFrom(text));
    if ((name == "true" || name == "false") && trimmed(text).empty())
        return assign(list, std::optional(name == "true"));
    return false;
}

/// `depth` counts the containers around the element.
bool readElement(const pugi::xml_node& element, PropertyList& list, int depth) {
    const std::string_view name = element.name();
    if (name == "dict" || name == "array") {
        if (depth == maxPropertyListDepth)
            return false;
        return name == "dict"
                   ? readDictionary(element, list.value.emplace<PropertyList::Dictionary>(), depth + 1)
                   : readArray(element, list.value.emplace<PropertyList::Array>(), depth + 1);
    }
    std::string text;
    return readText(element, text) && readScalar(name, std::move(text), list);
}

/// Takes what may stand before the one element of a document out of it: a declaration at the very start, and
/// one document type. What is left of either stands in a wrong place.
void removeProlog(pugi::xml_document& document, std::string_view text) {
    constexpr std::string_view declaration = "<?xml";
    if (text.starts_with(declaration) && text.size() > declaration.size() &&
        isXmlSpace(text[declaration.size()]))
        document.remove_child(
            document.find_child([](const auto& child) { return child.type() == pugi::node_declaration; }));
    for (auto child = document.first_child(); child && child.type() != pugi::node_element;
         child = child.next_sibling()) {
        if (child.type() != pugi::node_doctype)
            continue;
        document.remove_child(child);
        return;
    }
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
            // A bare carriage return would read back as a line feed. XML knows no other control characters
            // (Extensible Markup Language 1.0, section 2.2), not even by number.
            if (character == '\r')
                out += "&#13;";
            else if (static_cast<unsigned char>(character) < 0x20 && character != '\t' && character != '\n')
                appendUtf8(out, replacementCharacter);
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
        // The range of an Instant begins amid a second: cut off, the earliest ones would lie before it.
        constexpr Instant firstWholeSecond = std::chrono::ceil<std::chrono::seconds>(distantPast);
        const bool wholeSeconds = dates_ == PlistDatePrecision::wholeSeconds;
        const DateText date = dateText(wholeSeconds ? std::max(value, firstWholeSecond) : value);
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
    constexpr unsigned options = pugi::parse_cdata | pugi::parse_eol | pugi::parse_ws_pcdata |
                                 pugi::parse_fragment | pugi::parse_declaration | pugi::parse_doctype;
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8))
        return std::nullopt;
    removeProlog(document, text);
    const auto root = onlyElement(document);
    const auto value = onlyElement(root);
    std::optional<PropertyList> list(std::in_place);
    if (!value || std::string_view(root.name()) != "plist" || !readElement(value, *list, 0))
        return std::nullopt;
    return list;
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
