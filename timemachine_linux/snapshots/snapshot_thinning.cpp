#include "timemachine_linux/snapshots/snapshot_thinning.h"

#include <algorithm>
#include <chrono>
#include <set>

#include "platform/text/digit_pattern.h"

namespace norvane {

namespace {

constexpr double daySeconds = 86'400;
constexpr double allKeptSeconds = daySeconds;
constexpr double dailyKeptSeconds = 30 * daySeconds;

/// Days since 1970 in the time zone that the snapshot was made in.
long dayOf(const Snapshot& snapshot) {
    using namespace std::chrono;
    const year_month_day date(year(digitsAt(snapshot.name, 0, 4)),
                              month(static_cast<unsigned>(digitsAt(snapshot.name, 5, 2))),
                              day(static_cast<unsigned>(digitsAt(snapshot.name, 8, 2))));
    return sys_days(date).time_since_epoch().count();
}

long weekOf(const Snapshot& snapshot) {
    constexpr long daysFromMonday = 3; // 1970 began on a Thursday
    return (dayOf(snapshot) + daysFromMonday) / 7;
}

} // namespace

std::vector<Snapshot> supersededSnapshots(const std::vector<Snapshot>& snapshots, Instant now) {
    std::vector<Snapshot> superseded;
    std::set<long> days;
    std::set<long> weeks;
    const Instant present = snapshots.size() > 1 ? std::min(now, (snapshots.end() - 2)->date) : now;
    for (auto snapshot = snapshots.rbegin(); snapshot != snapshots.rend(); ++snapshot) {
        const double age = secondsBetween(snapshot->date, present);
        const bool firstOfDay = days.insert(dayOf(*snapshot)).second;
        const bool firstOfWeek = weeks.insert(weekOf(*snapshot)).second;
        const bool newest = snapshot == snapshots.rbegin();
        if (!newest && age > allKeptSeconds && !(age <= dailyKeptSeconds ? firstOfDay : firstOfWeek))
            superseded.push_back(*snapshot);
    }
    std::reverse(superseded.begin(), superseded.end());
    return superseded;
}

} // namespace norvane
