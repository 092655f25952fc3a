#include "tests/screenshots/health_states.h"

#include <set>

namespace norvane::screenshots {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;

/// Attempts at equal distances up to the last one, the durations in turn; 0 minutes: without success.
struct History {
    int attempts = 20;
    double hoursBetween = 14;
    double hoursSinceLast = 5;
    std::vector<double> minutes = {4, 6.5, 3, 12, 5, 4, 26, 5, 8};
    std::set<int> failures = {}; ///< 0 is the last attempt.
    int older = 0;               ///< Backups before those, one a day.
};

void remember(const SimulatedTimeMachine& timeMachine, Instant now, const History& history) {
    timeMachine.attemptDates.clear();
    timeMachine.snapshotDates.clear();
    Instant oldest = now;
    for (int i = 0; i < history.attempts; ++i) {
        oldest = plusSeconds(now, -(history.hoursSinceLast + i * history.hoursBetween) * hour);
        const double length = history.minutes[static_cast<std::size_t>(i) % history.minutes.size()] * minute;
        timeMachine.attemptDates.push_back(plusSeconds(oldest, -length));
        if (!history.failures.contains(i))
            timeMachine.snapshotDates.push_back(oldest);
    }
    for (int i = 0; i < history.older; ++i)
        timeMachine.snapshotDates.push_back(plusSeconds(oldest, -(i + 1) * day));
}

void run(SimulatedMachine& machine, SimulatedProgram& program, const History& history) {
    program.store.setSchedule({{DailyTimesRule{{{12, 30}, {20, 0}}}}, {}});
    const double lastHours = history.hoursSinceLast + 10 * minute / hour;
    program.store.setLastBackupDate(plusSeconds(machine.time.now(), -lastHours * hour));
    program.start();
    machine.time.advance(10 * minute);
    remember(machine.timeMachine, machine.time.now(), history);
}

void healthy(SimulatedMachine& machine, SimulatedProgram& program) {
    run(machine, program, {.failures = {4}, .older = 44});
}

} // namespace

const std::vector<HealthState>& healthStates() {
    static const std::vector<HealthState> states = {
        {"ok", healthy, [](SimulatedMachine& m) { m.timeMachine.bytesAvailable = 3'000'000'000; }},
        {"ok-bottom", healthy, nullptr, 1},
        {.name = "ok-bar", .reach = healthy, .keys = {Qt::Key_Tab, Qt::Key_Left, Qt::Key_Left, Qt::Key_Left}},
        {"stale",
         [](SimulatedMachine& m, SimulatedProgram& p) {
             m.timeMachine.bytesUsed = 927'000'000'000;
             m.timeMachine.bytesAvailable = 73'000'000'000;
             run(m, p, {.attempts = 9, .hoursBetween = 1, .hoursSinceLast = 27, .failures = {0, 1}});
         }},
        {"critical",
         [](SimulatedMachine& m, SimulatedProgram& p) {
             m.files.homeAvailableBytes = 8'200'000'000;
             run(m, p,
                 {.hoursBetween = 30,
                  .hoursSinceLast = 76,
                  .minutes = {14, 45, 200, 31},
                  .failures = {0, 1, 2, 5}});
         }},
        {"one", [](SimulatedMachine& m, SimulatedProgram& p) { run(m, p, {.attempts = 1}); }},
        {.name = "first",
         .reach =
             [](SimulatedMachine& m, SimulatedProgram& p) {
                 p.start();
                 m.timeMachine.backupSeconds = 12 * minute;
                 p.controller->requestBackup(false);
                 m.time.advance(20 * minute - 1);
             },
         .scrolled = 1},
        {"empty",
         [](SimulatedMachine& m, SimulatedProgram& p) {
             m.timeMachine.name.reset();
             m.files.homeAvailableBytes.reset();
             run(m, p, {.attempts = 0});
         }},
        {.name = "loading",
         .reach =
             [](SimulatedMachine& m, SimulatedProgram& p) {
                 p.start();
                 m.time.advance(minute);
             },
         .reads = false},
    };
    return states;
}

HealthServices healthServices(SimulatedMachine& machine, SimulatedProgram& program) {
    return {.controller = *program.controller,
            .clock = machine.time,
            .timers = machine.time,
            .formats = *program.formats,
            .translator = machine.texts,
            .workspace = machine.workspace,
            .calendar = [] { return *Calendar::inZone("UTC"); },
            .website = "https://norvane.example"};
}

} // namespace norvane::screenshots
