// A machine with a user, on which everything goes wrong that can.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "controller/backup_controller.h"
#include "platform/simulated/simulated_services.h"
#include "tests/simulation/faulty_services.h"

namespace norvane::simulation {

/// What a user or the machine does next, in words for the report.
struct Happening {
    std::string what;
    double everyHours; ///< On average.
    void (*happen)(class World&);
};

/// The real controller over simulated services. Everything follows from the seed.
class World {
public:
    explicit World(std::uint64_t seed);

    /// Starts the program, again if it runs: what is stored survives, memory does not.
    void startProgram();

    [[nodiscard]] static const std::vector<Happening>& happenings();

    Random random;
    SimulatedTime time;
    SimulatedTimeMachine timeMachine{time};
    FaultyTools tools{timeMachine, time, random};
    FaultyDefaults defaults{random};
    SimulatedFileSystem files;
    SimulatedMeasurements measurements;
    SimulatedNotifications notifications;
    SimulatedSystemEvents systemEvents;
    SimulatedProcessActivity processActivity;
    SimulatedNetworkProbe network;
    SimulatedWorkspace workspace;
    SimulatedLogFile logFile;
    SimulatedFormats formats;
    UntranslatedText texts;
    EventLog eventLog{time, logFile};
    TMUtil tmUtil{tools, {"/usr/bin/tmutil", "/usr/bin/defaults"}, network, workspace};
    CrashReporter crashReporter{defaults, files, time, "/reports"};
    SettingsStore store{defaults};
    std::string zone = "Europe/Berlin"; ///< In which the program was started last, and the machine is now.
    std::unique_ptr<BackupController> controller;
    Instant startedAt;       ///< When the program was started last.
    Instant graceEnd;        ///< Until when that start waits.
    int starts = 0;          ///< Of the program so far.
    int jumps = 0;           ///< Of the wall clock against the timers since then: sleep, and clock steps.
    bool clockMoved = false; ///< The wall clock was set since the watcher last looked.
    bool userAsked = false;  ///< The user pressed "Back Up Now" since then.
};

} // namespace norvane::simulation
