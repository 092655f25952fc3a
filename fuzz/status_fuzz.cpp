#include "fuzz/fuzz.h"
#include "platform/text/property_list_text.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

bool isFraction(const std::optional<double>& number) { return !number || (*number >= 0 && *number <= 1); }

} // namespace

void fuzz(std::string_view input) {
    const TMStatus status = TMUtil::parseStatus(input);
    check(isFraction(status.percent), "percent is 0 to 1.");
    check(isFraction(status.fractionOfProgressBar), "fractionOfProgressBar is 0 to 1.");
    if (status.progress) {
        check(status.progress->totalBytes > 0, "totalBytes > 0.");
        check(!status.progress->timeRemaining || *status.progress->timeRemaining > 0, "timeRemaining > 0.");
    }
    if (status.raw.empty())
        check(status == TMStatus::idle(), "Without anything printed the status is idle.");
    if (status.phase)
        check(status.raw.at("BackupPhase").string() &&
                  *status.raw.at("BackupPhase").string() == *status.phase,
              "The phase is as printed.");
    const std::string printed = "Backup session status:\n" + writeTextPropertyList({status.raw}) + "\n";
    check(TMUtil::parseStatus(printed) == status, "The status reads back from its raw entries.");
}

} // namespace norvane
