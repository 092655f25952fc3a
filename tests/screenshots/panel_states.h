// The states in which the panel looks different.
#pragma once

#include <string>
#include <vector>

#include "tests/support/simulated_program.h"

namespace norvane::screenshots {

struct PanelState {
    std::string name; ///< Of the picture.
    /// Leads a program that has just been installed into the state.
    void (*reach)(SimulatedMachine& machine, SimulatedProgram& program);
    bool asksToQuit = false;
};

/// A Thursday, 9:00 in UTC; where every state begins.
constexpr Instant thatMorning =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9};

[[nodiscard]] const std::vector<PanelState>& panelStates();

} // namespace norvane::screenshots
