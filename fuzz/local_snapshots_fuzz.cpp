#include "fuzz/fuzz.h"
#include "timemachine/tm_util.h"

namespace norvane {

void fuzz(std::string_view input) {
    static const Calendar calendar = *Calendar::inZone("Europe/Berlin");
    const auto snapshots = TMUtil::parseLocalSnapshots(input, calendar);
    std::string printed = "Snapshots for disk /:\n";
    for (const TMUtil::LocalSnapshot& snapshot : snapshots) {
        check(snapshot.token.size() == 17, "A token is a whole date.");
        check(input.find(snapshot.token) != std::string_view::npos, "A token stands in the text.");
        check(snapshot.date <= snapshots.front().date, "The newest is the first.");
        printed += "com.apple.TimeMachine." + snapshot.token + ".local\n";
    }
    check(TMUtil::parseLocalSnapshots(printed, calendar) == snapshots, "Snapshots read back as printed.");
}

} // namespace norvane
