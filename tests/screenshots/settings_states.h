// The tabs of the Settings window, and the states in which they look different.
#pragma once

#include <QQuickItem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/time/icu_formats.h"
#include "tests/support/simulated_program.h"
#include "ui/settings/settings_view_model.h"

namespace norvane::screenshots {

/// The Settings window's model over a simulated machine on which the program has run for a day.
class SettingsScene {
public:
    SettingsScene();

    [[nodiscard]] SettingsViewModel& model() { return model_; }
    void show(SettingsTab tab);

    const IcuFormats formats;
    SimulatedMachine machine;
    SimulatedProgram program;

private:
    SimulatedUpdateService::State updates_;
    UpdaterViewModel updater_;
    SettingsViewModel model_;
};

struct SettingsState {
    std::string name; ///< Of the picture.
    void (*reach)(SettingsScene& scene);
    double scrolled = 0;                      ///< How far down the tab, from 0 to 1.
    void (*change)(SettingsScene&) = nullptr; ///< With the window open.
};

[[nodiscard]] const std::vector<SettingsState>& settingsStates();

/// Scrolls everything inside that can be.
void scrollTo(QQuickItem& item, double share);

} // namespace norvane::screenshots
