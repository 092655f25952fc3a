#include "fuzz/fuzz.h"
#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"

namespace norvane {

void fuzz(std::string_view input) {
    const auto list = parseXmlPropertyList(input);
    if (!list)
        return;
    const std::string written = writeXmlPropertyList(*list);
    const auto again = parseXmlPropertyList(written);
    check(again.has_value(), "What is written can be read.");
    check(writeXmlPropertyList(*again) == written, "What was read back is written the same.");
    // U+FFFD may stand for a control character, which XML has no place for.
    const bool changes =
        written.find("nan</real>") != std::string::npos || written.find("\xEF\xBF\xBD") != std::string::npos;
    check(*again == *list || changes, "What is written reads back.");
    check(parseXmlPropertyList(writeXmlPropertyList(*list, PlistDatePrecision::wholeSeconds)).has_value(),
          "Whole seconds can be read.");

    // In the text format every scalar but data becomes a string, and those stay as they are.
    const std::string text = writeTextPropertyList(*list);
    const auto strings = parseTextPropertyList(text);
    check(strings.has_value(), "Every list can be read from its text form.");
    check(writeTextPropertyList(*strings) == text, "The text form is stable.");
}

} // namespace norvane
