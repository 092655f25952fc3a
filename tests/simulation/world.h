// A machine with a user, on which everything goes wrong that can.
#pragma once

#include <string>
#include <vector>

#include "tests/simulation/faulty_services.h"
#include "tests/support/simulated_program.h"

namespace norvane::simulation {

/// What a user or the machine does next, in words for the report.
struct Happening {
    std::string what;
    double everyHours; ///< On average.
    void (*happen)(class World&);
};

/// A simulated machine with the program on it. Everything follows from the seed.
class World : public SimulatedMachine {
public:
    explicit World(std::uint64_t seed);

    /// Starts the program, again if it runs: what is stored survives, memory does not.
    void startProgram();

    [[nodiscard]] static const std::vector<Happening>& happenings();

    Random random;
    const bool sleeps; ///< Some machines never do.
    FaultyTools tools{timeMachine, time, random};
    FaultyDefaults settings{defaults, random};
    SimulatedProgram program{*this, tools, settings};
    std::string machineZone = "Europe/Berlin"; ///< Where the user is.
    std::string programZone = machineZone;     ///< Where the program was started last.
    Instant startedAt;                         ///< When the program was started last.
    Instant graceEnd;                          ///< Until when that start waits.
    std::optional<Instant> plannedBefore;      ///< What had been planned before that start, as stored.
    int starts = 0;                            ///< Of the program so far.
    int jumps = 0;           ///< Of the wall clock against the timers since then: sleep, and clock steps.
    int stepsBack = 0;       ///< Of the wall clock since then.
    bool clockMoved = false; ///< The wall clock was set since the watcher last looked.
    bool otherDiskChosen = false;  ///< Since the program was started.
    std::optional<Instant> wokeAt; ///< When the machine woke since then.
    bool userAsked = false;        ///< The user pressed "Back Up Now" since then.
};

} // namespace norvane::simulation
