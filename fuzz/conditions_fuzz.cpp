#include "fuzz/fuzz.h"
#include "scheduler_core/conditions_json.h"

namespace norvane {

void fuzz(std::string_view input) {
    const Decoded<ConditionsConfig> decoded = decodeConditions(input);
    check(decoded.value.has_value() == decoded.error.empty(), "There is a value or a reason why not.");
    if (!decoded.value)
        return;
    const auto written = encodeConditions(*decoded.value);
    check(written.has_value(), "What was read can be written.");
    check(decodeConditions(*written).value == decoded.value, "What is written reads back.");
}

} // namespace norvane
