#include "platform/text/utf8.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <unicode/utf8.h> // macros only: nothing of ICU is linked

namespace norvane {

namespace {

UChar32 decode(std::string_view text, std::size_t& index) {
    const char* const bytes = text.data();
    const std::size_t size = text.size();
    UChar32 codePoint = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // in the macro
    U8_NEXT(bytes, index, size, codePoint);
#pragma GCC diagnostic pop
    return codePoint;
}

} // namespace

bool isValidUtf8(std::string_view text) {
    for (std::size_t index = 0; index < text.size();) {
        // Nearly all text that the program reads is ASCII, so look at eight bytes at once.
        std::uint64_t bytes = 0;
        if (text.size() - index >= sizeof bytes) {
            std::memcpy(&bytes, text.data() + index, sizeof bytes);
            if ((bytes & 0x8080'8080'8080'8080) == 0) {
                index += sizeof bytes;
                continue;
            }
        }
        if (decode(text, index) < 0)
            return false;
    }
    return true;
}

void appendUtf8(std::string& text, char32_t codePoint) {
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, static_cast<std::uint32_t>(codePoint));
    text.append(bytes.data(), length);
}

char32_t nextCodePoint(std::string_view text, std::size_t& index) {
    const UChar32 codePoint = decode(text, index);
    return codePoint < 0 ? U'\uFFFD' : static_cast<char32_t>(codePoint);
}

} // namespace norvane
