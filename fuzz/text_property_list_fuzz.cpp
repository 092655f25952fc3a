#include "fuzz/fuzz.h"
#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

namespace {

bool holdsZeroByte(const PropertyList& list) {
    const auto inText = [](std::string_view text) { return text.find('\0') != std::string_view::npos; };
    if (const auto* string = list.string())
        return inText(*string);
    if (const auto* array = list.array()) {
        for (const PropertyList& element : *array)
            if (holdsZeroByte(element))
                return true;
    }
    if (const auto* dictionary = list.dictionary()) {
        for (const auto& [key, element] : *dictionary)
            if (inText(key) || holdsZeroByte(element))
                return true;
    }
    return false;
}

} // namespace

void fuzz(std::string_view input) {
    const auto list = parseTextPropertyList(input);
    if (!list)
        return;
    check(parseTextPropertyList(writeTextPropertyList(*list)) == list, "What is written reads back.");
    // XML has no form for a zero byte.
    check(holdsZeroByte(*list) || parseXmlPropertyList(writeXmlPropertyList(*list)) == list,
          "What was read as text can be stored as XML.");
}

} // namespace norvane
