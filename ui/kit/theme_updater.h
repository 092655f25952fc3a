// Keeps the theme in step with the desktop's preferences and the user's.
#pragma once

#include <memory>

#include "controller/backup_controller.h"
#include "platform/appearance.h"
#include "ui/kit/theme.h"

namespace norvane {

/// The program's own colour unless the user chose one for the desktop and did not prefer ours.
[[nodiscard]] QColor appAccentColor(bool alwaysBrandAccent, const std::optional<Rgb>& systemAccent);

/// Main thread only.
class ThemeUpdater {
public:
    ThemeUpdater(Theme& theme, Appearance& appearance, UserDefaults& defaults);
    /// Also follows the user's choice in this program's settings while it runs.
    ThemeUpdater(Theme& theme, Appearance& appearance, UserDefaults& defaults, BackupController& controller);

private:
    void update();

    Theme& theme_;
    Appearance& appearance_;
    const SettingsStore store_;
    std::unique_ptr<Appearance::Observation> observation_;
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
