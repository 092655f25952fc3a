// The states in which the Health window looks different.
#pragma once

#include <string>
#include <vector>

#include "tests/support/simulated_program.h"
#include "ui/health/health_view_model.h"

namespace norvane::screenshots {

struct HealthState {
    std::string name; ///< Of the picture.
    /// Leads a program that has just been installed into the state.
    void (*reach)(SimulatedMachine& machine, SimulatedProgram& program);
    /// What changes once the window has read the records, so that reading them again shows something.
    void (*later)(SimulatedMachine& machine) = nullptr;
    double scrolled = 0;        ///< How far down the window, from 0 to 1.
    bool reads = true;          ///< Whether the window has read the records.
    std::vector<int> keys = {}; ///< Pressed then; Qt's codes.
};

[[nodiscard]] const std::vector<HealthState>& healthStates();

[[nodiscard]] HealthServices healthServices(SimulatedMachine& machine, SimulatedProgram& program);

} // namespace norvane::screenshots
