#include "platform/text/property_list_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <unicode/utf16.h> // macros only: nothing of ICU is linked
#include <utility>

#include "platform/text/property_list_scalars.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD; // for an escape that stands for no character
constexpr std::string_view letterEscapes = "abfnrtv";
constexpr std::string_view letterEscapeValues = "\a\b\f\n\r\t\v";

bool isAsciiAlphanumeric(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

/// The characters that belong to a set, for a look-up by byte.
class CharacterSet {
public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char character : characters)
            contains_[static_cast<unsigned char>(character)] = true;
    }
    [[nodiscard]] constexpr bool contains(char character) const {
        return contains_[static_cast<unsigned char>(character)];
    }

private:
    std::array<bool, 256> contains_{};
};

constexpr CharacterSet spaceCharacters(" \t\n\v\f\r");
constexpr CharacterSet
    unquotedCharacters("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_$/:.-");

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
/// none or false, after which the whole text is refused. Values are read into their place, unmoved.
class TextReader {
public:
    explicit TextReader(std::string_view text) : text_(text) {}

    std::optional<PropertyList> readDocument() {
        std::optional<PropertyList> list(std::in_place);
        if (!readValue(*list, 0) || !skipSpace() || !atEnd())
            return std::nullopt;
        return list;
    }

private:
    [[nodiscard]] bool atEnd() const { return position_ >= text_.size(); }
    [[nodiscard]] char peek() const { return text_[position_]; }

    /// Skips white space and comments. False: a comment does not end.
    bool skipSpace() {
        while (true) {
            while (!atEnd() && spaceCharacters.contains(peek()))
                ++position_;
            if (atEnd() || peek() != '/')
                return true;
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
    bool readValue(PropertyList& list, int depth) {
        if (!skipSpace() || atEnd())
            return false;
        if (peek() == '{' || peek() == '(') {
            if (depth == maxPropertyListDepth)
                return false;
            return text_[position_++] == '{'
                       ? readDictionary(list.value.emplace<PropertyList::Dictionary>(), depth + 1)
                       : readArray(list.value.emplace<PropertyList::Array>(), depth + 1);
        }
        if (take('<'))
            return readData(list.value.emplace<PropertyListData>().bytes);
        return readString(list.value.emplace<std::string>());
    }

    bool readDictionary(PropertyList::Dictionary& dictionary, int depth) {
        while (!take('}')) {
            std::string key;
            if (!readString(key) || !take('='))
                return false;
            // Tools print the keys in order, so that the end is their place.
            const auto entry = dictionary.try_emplace(dictionary.end(), std::move(key));
            if (!readValue(entry->second, depth) || !take(';'))
                return false;
        }
        return true;
    }

    bool readArray(PropertyList::Array& array, int depth) {
        while (!take(')')) {
            if (!readValue(array.emplace_back(), depth))
                return false;
            if (take(','))
                continue;
            return take(')');
        }
        return true;
    }

    bool readData(std::string& bytes) {
        while (!take('>')) {
            // White space may stand between bytes, not inside one.
            const auto high = position_ < text_.size() ? hexDigit(text_[position_]) : std::nullopt;
            const auto low = position_ + 1 < text_.size() ? hexDigit(text_[position_ + 1]) : std::nullopt;
            if (!high || !low)
                return false;
            bytes += static_cast<char>(*high << 4 | *low);
            position_ += 2;
        }
        return true;
    }

    bool readString(std::string& string) {
        if (!skipSpace() || atEnd())
            return false;
        if (peek() == '"' || peek() == '\'')
            return readQuotedString(string, text_[position_++]);
        const std::size_t start = position_;
        while (!atEnd() && unquotedCharacters.contains(peek()))
            ++position_;
        string = text_.substr(start, position_ - start);
        return !string.empty();
    }

    bool readQuotedString(std::string& string, char quote) {
        while (true) {
            const std::size_t start = position_;
            while (!atEnd() && peek() != quote && peek() != '\\')
                ++position_;
            string += text_.substr(start, position_ - start);
            if (atEnd())
                return false;
            if (text_[position_++] == quote)
                return true;
            if (!readEscape(string))
                return false;
        }
    }

    /// What follows a backslash.
    bool readEscape(std::string& string) {
        if (atEnd())
            return false;
        const char character = text_[position_++];
        if (const auto index = letterEscapes.find(character); index != std::string_view::npos)
            string += letterEscapeValues[index];
        else if (character == 'U')
            readUnicodeEscape(string);
        else if (character >= '0' && character <= '7')
            readOctalEscape(string, static_cast<unsigned>(character - '0'));
        else
            string += character; // one odd byte of a name must not cost the whole text
        return true;
    }

    /// One to three octal digits, taken as Latin-1.
    void readOctalEscape(std::string& string, unsigned number) {
        for (int digits = 1; digits < 3 && !atEnd() && peek() >= '0' && peek() <= '7'; ++digits)
            number = number * 8 + static_cast<unsigned>(text_[position_++] - '0');
        appendUtf8(string, number <= 0xFF ? number : replacementCharacter);
    }

    /// Takes four hexadecimal digits, or nothing.
    std::optional<unsigned> takeCodeUnit() {
        constexpr std::size_t length = 4;
        unsigned unit = 0;
        for (std::size_t digits = 0; digits < length; ++digits) {
            const std::size_t place = position_ + digits;
            const auto digit = place < text_.size() ? hexDigit(text_[place]) : std::nullopt;
            if (!digit)
                return std::nullopt;
            unit = unit << 4 | *digit;
        }
        position_ += length;
        return unit;
    }

    /// A code unit of UTF-16; a character past U+FFFF takes two such escapes in a row.
    void readUnicodeEscape(std::string& string) {
        const auto unit = takeCodeUnit();
        if (!unit) {
            string += 'U';
            return;
        }
        if (!U16_IS_SURROGATE(*unit)) {
            appendUtf8(string, *unit);
            return;
        }
        const std::size_t afterFirst = position_;
        if (U16_IS_LEAD(*unit) && text_.substr(position_).starts_with("\\U")) {
            position_ += 2;
            const auto trail = takeCodeUnit();
            if (trail && U16_IS_TRAIL(*trail)) {
                appendUtf8(string, static_cast<char32_t>(U16_GET_SUPPLEMENTARY(*unit, *trail)));
                return;
            }
        }
        position_ = afterFirst;
        appendUtf8(string, replacementCharacter);
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
