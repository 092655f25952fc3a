// The states in which the Time Machine pane looks different.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/time/icu_formats.h"
#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "settings_pane/pane_view_model.h"
#include "tests/support/simulated_backup_settings.h"

namespace norvane::screenshots {

/// The pane's model on a simulated machine, with nothing set.
struct PaneScene {
    PaneScene();
    void settle() { time.settle(); }

    SimulatedTime time;
    SimulatedBackupSettings settings;
    SimulatedWorkspace workspace;
    const IcuFormats formats;
    UntranslatedText texts;
    PaneViewModel model{{settings, time, time, workspace, formats, texts, "/home/anna"}};
};

struct PaneState {
    std::string name; ///< Of the picture.
    void (*reach)(PaneScene& scene);
    void (*change)(PaneScene& scene) = nullptr; ///< With the window open.
};

[[nodiscard]] const std::vector<PaneState>& paneStates();

} // namespace norvane::screenshots
