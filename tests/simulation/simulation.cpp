#include "tests/simulation/simulation.h"

#include <algorithm>
#include <deque>

#include "tests/simulation/watcher.h"

namespace norvane::simulation {

namespace {

constexpr double yearSeconds = 365 * 86400.0;
constexpr std::size_t keptHappenings = 12;

/// Which happening comes next, and after how many seconds.
class Fate {
public:
    explicit Fate(Random& random) : random_(random) {
        for (const Happening& happening : World::happenings())
            perHour_ += 1 / happening.everyHours;
    }

    double nextAfterSeconds() { return random_.exponential(3600 / perHour_); }

    const Happening& next() {
        double share = random_.fraction() * perHour_;
        for (const Happening& happening : World::happenings()) {
            share -= 1 / happening.everyHours;
            if (share < 0)
                return happening;
        }
        return World::happenings().back();
    }

private:
    Random& random_;
    double perHour_ = 0;
};

std::string reportOf(const Outcome& outcome, double years, const std::deque<std::string>& happenings,
                     const std::deque<std::string>& lines) {
    std::string report = "Broken: " + outcome.violation + "\n\nWhat happened last:\n";
    for (const std::string& happening : happenings)
        report += "  " + happening + "\n";
    report += "\nThe last lines of the log:\n";
    for (const std::string& line : lines)
        report += "  " + line + "\n";
    return report + "\nRepeat it: scripts/simulate --years " + std::to_string(years) + " --seed " +
           std::to_string(outcome.seed) + " --one\n";
}

} // namespace

Outcome simulate(std::uint64_t seed, double years) {
    World world(seed);
    Watcher watcher(world);
    Fate fate(world.random);
    std::deque<std::string> happenings;
    watcher.programStarted();
    watcher.look();
    double lived = 0;
    const auto live = [&](double seconds) {
        const Instant until = plusSeconds(world.time.now(), seconds);
        while (!watcher.violation() && world.time.nextEvent().value_or(distantFuture) <= until) {
            world.time.step();
            watcher.look();
        }
        world.time.advanceTo(until);
        lived += seconds;
    };
    while (!watcher.violation() && lived < years * yearSeconds) {
        live(fate.nextAfterSeconds());
        if (watcher.violation())
            break;
        const Happening& happening = fate.next();
        happenings.push_back(logTimestamp(world.time.now()) + " " + happening.what);
        if (happenings.size() > keptHappenings)
            happenings.pop_front();
        const Instant before = world.time.now();
        const auto startedBefore = world.starts;
        happening.happen(world);
        lived += std::max(0.0, world.clockMoved ? 0.0 : secondsBetween(before, world.time.now()));
        if (world.starts != startedBefore)
            watcher.programStarted();
        watcher.look();
    }
    Outcome outcome{seed, lived / yearSeconds, watcher.violation().value_or(""), ""};
    if (watcher.violation())
        outcome.report = reportOf(outcome, years, happenings, watcher.lastLines());
    return outcome;
}

} // namespace norvane::simulation
