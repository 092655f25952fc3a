// The states in which the Local Snapshots window looks different.
#pragma once

#include <string>
#include <vector>

#include "tests/support/simulated_program.h"
#include "ui/local_snapshots/local_snapshots_view_model.h"

namespace norvane::screenshots {

struct SnapshotsState {
    std::string name; ///< Of the picture.
    /// Leads a machine without local snapshots into the state.
    void (*reach)(SimulatedMachine& machine);
    bool reads = true; ///< Whether the window has read them.
    /// What the user does then.
    void (*act)(SimulatedMachine& machine, LocalSnapshotsViewModel& model) = nullptr;
};

[[nodiscard]] const std::vector<SnapshotsState>& snapshotsStates();

[[nodiscard]] LocalSnapshotsServices snapshotsServices(SimulatedMachine& machine, const TMUtil& tmUtil);

} // namespace norvane::screenshots
