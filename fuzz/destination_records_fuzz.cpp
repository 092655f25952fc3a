#include <algorithm>

#include "fuzz/fuzz.h"
#include "platform/text/property_list_xml.h"
#include "timemachine/health_data.h"

namespace norvane {

namespace {

void checkHealth(const std::vector<TMUtil::DestinationStatus>& statuses, Instant now) {
    const HealthData data = HealthData::assemble(statuses, std::nullopt, now);
    check(data.attempts.size() <= 20, "At most 20 attempts.");
    check(std::is_sorted(data.attempts.begin(), data.attempts.end(),
                         [](const auto& left, const auto& right) { return left.date < right.date; }),
          "Attempts are sorted, oldest first.");
    for (const HealthData::Attempt& attempt : data.attempts) {
        check(attempt.id == attempt.date, "An attempt's identity is its date.");
        check(secondsBetween(attempt.date, now) <= 30 * 86400, "Attempts are of the last 30 days.");
        check(attempt.success == attempt.duration.has_value(), "Successful attempts have a duration.");
        check(!attempt.duration || (*attempt.duration >= 0 && *attempt.duration < 6 * 3600),
              "A snapshot belongs to an attempt of the six hours before it.");
    }
    const bool anyBackup = data.backupCount > 0;
    check(anyBackup == data.lastSuccess.has_value() && anyBackup == data.oldestBackup.has_value(),
          "A count, a first and a last backup go together.");
    check(!anyBackup || *data.oldestBackup <= *data.lastSuccess, "The oldest backup is not the newest.");
}

} // namespace

void fuzz(std::string_view input) {
    const auto statuses = TMUtil::parseDestinationStatuses(input);
    if (const auto list = parsePropertyList(input)) {
        // U+FFFD may stand for a control character, which XML has no place for.
        const std::string written = writeXmlPropertyList(*list);
        check(TMUtil::parseDestinationStatuses(written) == statuses ||
                  written.find("\xEF\xBF\xBD") != std::string::npos,
              "The records are the same from a stored file.");
    }
    if (statuses.empty())
        return;
    for (const Instant now : {distantPast, Instant(std::chrono::seconds(1'714'558'500)), distantFuture})
        checkHealth(statuses, now);
}

} // namespace norvane
