#include <algorithm>
#include <vector>

#include "fuzz/fuzz.h"
#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"
#include "timemachine_linux/defaults/defaults_value.h"

namespace norvane {

namespace {

/// One argument per line.
std::vector<std::string> argumentsFrom(std::string_view input) {
    std::vector<std::string> arguments;
    while (!input.empty()) {
        const std::string_view line = input.substr(0, input.find('\n'));
        input.remove_prefix(std::min(line.size() + 1, input.size()));
        arguments.emplace_back(line);
    }
    return arguments;
}

} // namespace

void fuzz(std::string_view input) {
    const auto arguments = argumentsFrom(input);
    const auto parsed = parseDefaultsValue(arguments);
    if (!parsed) {
        check(!parsed.failure().text.empty(), "A failure has a reason.");
        return;
    }
    const auto& [value, appends] = *parsed;
    check(!appends || value.array(), "Only arrays are appended.");
    const std::string text = writeTextPropertyList(value);
    check(text.find('\n') == std::string::npos || value.array() || value.dictionary(),
          "Every scalar is printed on one line.");
    // Arguments may be no UTF-8, which cannot be stored; whatever can be reads back the same.
    const std::string stored = writeXmlPropertyList(value);
    if (const auto again = parseXmlPropertyList(stored))
        check(writeXmlPropertyList(*again) == stored, "What is stored reads back.");
}

} // namespace norvane
