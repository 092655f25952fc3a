#include "controller/verification.h"

#include <algorithm>

namespace norvane {

bool hasSnapshotSince(const std::vector<TMUtil::DestinationStatus>& destinations, Instant start) {
    constexpr double lookBackSeconds = 120;
    const Instant earliest = plusSeconds(start, -lookBackSeconds);
    return std::any_of(destinations.begin(), destinations.end(), [&](const auto& destination) {
        const auto& dates = destination.snapshotDates;
        return std::any_of(dates.begin(), dates.end(), [&](Instant date) { return date >= earliest; });
    });
}

std::string reportedError(const std::vector<TMUtil::DestinationStatus>& destinations) {
    for (const TMUtil::DestinationStatus& destination : destinations) {
        if (destination.result.value_or(0) == 0)
            continue;
        std::string text = " — Time Machine reported error " + std::to_string(*destination.result);
        const char* separator = " — while processing: ";
        for (const std::string& parameter : destination.messageParameters) {
            text += separator + parameter;
            separator = ", ";
        }
        return text;
    }
    return {};
}

} // namespace norvane
