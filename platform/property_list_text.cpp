#include "platform/property_list_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

#include <unicode/utf16.h> // macros only: nothing of ICU is linked

#include "platform/property_list_scalars.h"
#include "platform/utf8.h"

namespace norvane {

namespace {

constexpr std::string_view letterEscapes = "abfnrtv";
constexpr std::string_view letterEscapeValues = "\a\b\f\n\r\t\v";

bool isAsciiAlphanumeric(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

bool isUnquotedCharacter(char character) {
    return isAsciiAlphanumeric(character) ||
           std::string_view("_$/:.-").find(character) != std::string_view::npos;
}

std::optional<unsigned> hexDigit(char character) {
    if (character >= '0' && character <= '9')
        return static_cast<unsigned>(character - '0');
    if (character >= 'a' && character <= 'f')
        return static_cast<unsigned>(character - 'a') + 10;
    if (character >= 'A' && character <= 'F')
        return static_cast<unsigned>(character - 'A') + 10;
    return std::nullopt;
}

/// A recursive-descent parser over one text. Every function leaves the position behind what it read, or gives
/// none or false, after which the whole text is refused.
class TextReader {
public:
    explicit TextReader(std::string_view text) : text_(text) {}

    std::optional<PropertyList> readDocument() {
        auto value = readValue(0);
        if (!value || !skipSpace() || !atEnd())
            return std::nullopt;
        return value;
    }

private:
    [[nodiscard]] bool atEnd() const { return position_ == text_.size(); }
    [[nodiscard]] char peek() const { return text_[position_]; }

    /// Skips white space and comments. False: a comment does not end.
    bool skipSpace() {
        while (true) {
            position_ = std::min(text_.find_first_not_of(" \t\n\v\f\r", position_), text_.size());
            const std::string_view rest = text_.substr(position_);
            if (rest.starts_with("//")) {
                position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
            } else if (rest.starts_with("/*")) {
                const auto end = text_.find("*/", position_ + 2);
                if (end == std::string_view::npos)
                    return false;
                position_ = end + 2;
            } else {
                return true;
            }
        }
    }

    /// Takes this character if it comes next, after white space.
    bool take(char character) {
        if (!skipSpace() || atEnd() || peek() != character)
            return false;
        ++position_;
        return true;
    }

    /// `depth` counts the containers around the value.
    std::optional<PropertyList> readValue(int depth) {
        if (!skipSpace() || atEnd())
            return std::nullopt;
        if (peek() == '{' || peek() == '(') {
            if (depth == maxPropertyListDepth)
                return std::nullopt;
            return text_[position_++] == '{' ? readDictionary(depth + 1) : readArray(depth + 1);
        }
        if (take('<'))
            return readData();
        auto string = readString();
        if (!string)
            return std::nullopt;
        return PropertyList{std::move(*string)};
    }

    std::optional<PropertyList> readDictionary(int depth) {
        PropertyList::Dictionary dictionary;
        while (!take('}')) {
            auto key = readString();
            if (!key || !take('='))
                return std::nullopt;
            auto value = readValue(depth);
            if (!value || !take(';'))
                return std::nullopt;
            dictionary.insert_or_assign(std::move(*key), std::move(*value));
        }
        return PropertyList{std::move(dictionary)};
    }

    std::optional<PropertyList> readArray(int depth) {
        PropertyList::Array array;
        while (!take(')')) {
            auto value = readValue(depth);
            if (!value)
                return std::nullopt;
            array.push_back(std::move(*value));
            if (take(','))
                continue;
            if (take(')'))
                break;
            return std::nullopt;
        }
        return PropertyList{std::move(array)};
    }

    std::optional<PropertyList> readData() {
        PropertyListData data;
        while (!take('>')) {
            // White space may stand between bytes, not inside one.
            const auto high = position_ < text_.size() ? hexDigit(text_[position_]) : std::nullopt;
            const auto low = position_ + 1 < text_.size() ? hexDigit(text_[position_ + 1]) : std::nullopt;
            if (!high || !low)
                return std::nullopt;
            data.bytes += static_cast<char>(*high << 4 | *low);
            position_ += 2;
        }
        return PropertyList{std::move(data)};
    }

    std::optional<std::string> readString() {
        if (!skipSpace() || atEnd())
            return std::nullopt;
        if (peek() == '"' || peek() == '\'')
            return readQuotedString(text_[position_++]);
        const std::size_t start = position_;
        while (!atEnd() && isUnquotedCharacter(peek()))
            ++position_;
        if (position_ == start)
            return std::nullopt;
        return std::string(text_.substr(start, position_ - start));
    }

    std::optional<std::string> readQuotedString(char quote) {
        std::string string;
        while (!atEnd()) {
            const char character = text_[position_++];
            if (character == quote)
                return string;
            if (character != '\\')
                string += character;
            else if (!readEscape(string))
                return std::nullopt;
        }
        return std::nullopt;
    }

    /// What follows a backslash.
    bool readEscape(std::string& string) {
        if (atEnd())
            return false;
        const char character = text_[position_++];
        if (const auto index = letterEscapes.find(character); index != std::string_view::npos)
            string += letterEscapeValues[index];
        else if (std::string_view("\"'\\\n").find(character) != std::string_view::npos)
            string += character;
        else if (character == 'U')
            return readUnicodeEscape(string);
        else if (character >= '0' && character <= '7')
            return readOctalEscape(string, static_cast<unsigned>(character - '0'));
        else
            return false;
        return true;
    }

    /// One to three octal digits, taken as Latin-1.
    bool readOctalEscape(std::string& string, unsigned number) {
        for (int digits = 1; digits < 3 && !atEnd() && peek() >= '0' && peek() <= '7'; ++digits)
            number = number * 8 + static_cast<unsigned>(text_[position_++] - '0');
        if (number > 0xFF)
            return false;
        appendUtf8(string, number);
        return true;
    }

    std::optional<unsigned> readCodeUnit() {
        unsigned unit = 0;
        for (int digits = 0; digits < 4; ++digits) {
            const auto digit = atEnd() ? std::nullopt : hexDigit(text_[position_++]);
            if (!digit)
                return std::nullopt;
            unit = unit << 4 | *digit;
        }
        return unit;
    }

    /// A code unit of UTF-16; a character past U+FFFF takes two such escapes in a row.
    bool readUnicodeEscape(std::string& string) {
        const auto unit = readCodeUnit();
        if (!unit || U16_IS_TRAIL(*unit))
            return false;
        if (!U16_IS_LEAD(*unit)) {
            appendUtf8(string, *unit);
            return true;
        }
        if (!text_.substr(position_).starts_with("\\U"))
            return false;
        position_ += 2;
        const auto trail = readCodeUnit();
        if (!trail || !U16_IS_TRAIL(*trail))
            return false;
        appendUtf8(string, static_cast<char32_t>(U16_GET_SUPPLEMENTARY(*unit, *trail)));
        return true;
    }

    const std::string_view text_;
    std::size_t position_ = 0;
};

// ---- Writing.

void appendUnicodeEscape(std::string& out, char32_t unit) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "\\U%04x", static_cast<unsigned>(unit));
    out += buffer.data();
}

void appendQuotedCharacter(std::string& out, char32_t character) {
    if (character == U'"' || character == U'\\') {
        out += '\\';
        out += static_cast<char>(character);
    } else if (character >= 0x20 && character < 0x7F) {
        out += static_cast<char>(character);
    } else if (const auto index = character < 0x20 ? letterEscapeValues.find(static_cast<char>(character))
                                                   : std::string_view::npos;
               index != std::string_view::npos) {
        out += '\\';
        out += letterEscapes[index];
    } else if (character <= 0xFFFF) {
        appendUnicodeEscape(out, character);
    } else {
        appendUnicodeEscape(out, U16_LEAD(character));
        appendUnicodeEscape(out, U16_TRAIL(character));
    }
}

/// Only letters and digits stand bare, although readers take more: so do the tools whose output this follows
/// ("-1", "0.5" and "com.example" are quoted there).
void appendScalar(std::string& out, std::string_view text) {
    bool bare = !text.empty();
    for (const char character : text)
        bare = bare && isAsciiAlphanumeric(character);
    if (bare) {
        out += text;
        return;
    }
    out += '"';
    for (std::size_t index = 0; index < text.size();)
        appendQuotedCharacter(out, nextCodePoint(text, index));
    out += '"';
}

class TextWriter {
public:
    std::string text;

    void write(const PropertyList& list) {
        std::visit([this](const auto& held) { writeValue(held); }, list.value);
    }

private:
    void writeValue(const std::string& value) { appendScalar(text, value); }
    void writeValue(std::int64_t value) { appendScalar(text, std::to_string(value)); }
    void writeValue(std::uint64_t value) { appendScalar(text, std::to_string(value)); }
    void writeValue(double value) { appendScalar(text, realText(value)); }
    void writeValue(bool value) { text += value ? '1' : '0'; }

    void writeValue(Instant value) {
        const DateText date = dateText(value);
        appendScalar(text, date.day + " " + date.time + " +0000");
    }

    void writeValue(const PropertyListData& value) {
        constexpr std::string_view digits = "0123456789abcdef";
        text += '<';
        for (std::size_t index = 0; index < value.bytes.size(); ++index) {
            if (index > 0 && index % 4 == 0)
                text += ' ';
            const auto byte = static_cast<unsigned char>(value.bytes[index]);
            text += digits[byte >> 4];
            text += digits[byte & 0xF];
        }
        text += '>';
    }

    void writeValue(const PropertyList::Array& value) {
        open('(');
        std::string_view separator;
        for (const PropertyList& element : value) {
            text += separator;
            separator = ",\n";
            indent();
            write(element);
        }
        if (!value.empty())
            text += '\n';
        close(')');
    }

    void writeValue(const PropertyList::Dictionary& value) {
        open('{');
        for (const auto& [key, element] : value) {
            indent();
            appendScalar(text, key);
            text += " = ";
            write(element);
            text += ";\n";
        }
        close('}');
    }

    /// The bracket is indented even behind "key = " and inside an array: that is how this output looks.
    void open(char bracket) {
        indent();
        text += bracket;
        text += '\n';
        ++level_;
    }

    void close(char bracket) {
        --level_;
        indent();
        text += bracket;
    }

    void indent() { text.append(level_ * 4, ' '); }

    std::size_t level_ = 0;
};

} // namespace

std::optional<PropertyList> parseTextPropertyList(std::string_view text) {
    if (!isValidUtf8(text))
        return std::nullopt;
    return TextReader(text).readDocument();
}

std::string writeTextPropertyList(const PropertyList& list) {
    TextWriter writer;
    writer.write(list);
    return writer.text;
}

} // namespace norvane
