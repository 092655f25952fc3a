// The real controller, installed on a simulated machine.
#pragma once

#include <memory>
#include <string>

#include "controller/backup_controller.h"
#include "platform/simulated/simulated_machine.h"

namespace norvane {

struct SimulatedProgram {
    /// The tools and the settings may stand between the program and the machine's own.
    SimulatedProgram(SimulatedMachine& simulated, const CommandRunner& tools, UserDefaults& settings)
        : machine(simulated), defaultsInUse(settings), eventLog(machine.time, machine.logFile),
          tmUtil(tools, {"/usr/bin/tmutil", "/usr/bin/defaults"}, machine.network, machine.workspace),
          crashReporter(settings, machine.files, machine.time, machine.emailComposer, "/reports",
                        "support@example.org"),
          store(settings) {}

    /// Starts the program, again if it runs: what is stored survives, memory does not.
    void start(const std::string& zone = "UTC") {
        controller.reset();
        controller = std::make_unique<BackupController>(ControllerServices{
            machine.time, machine.time, machine.time, defaultsInUse, tmUtil, machine.files,
            machine.measurements, machine.notifications, machine.systemEvents, machine.processActivity,
            crashReporter, eventLog, *formats, machine.texts, *Calendar::inZone(zone), "1.0", 4711});
    }

    [[nodiscard]] const ControllerState& state() const { return controller->state(); }

    SimulatedMachine& machine;
    UserDefaults& defaultsInUse;
    const Formats* formats = &machine.formats;
    EventLog eventLog;
    TMUtil tmUtil;
    CrashReporter crashReporter;
    SettingsStore store;
    std::unique_ptr<BackupController> controller;
};

} // namespace norvane
