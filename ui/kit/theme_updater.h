// Keeps the theme in step with the desktop's preferences and the user's.
#pragma once

#include <memory>

#include "platform/appearance.h"
#include "platform/user_defaults.h"
#include "ui/kit/theme.h"

namespace norvane {

/// The program's own colour unless the user chose one for the desktop and did not prefer ours.
[[nodiscard]] QColor appAccentColor(bool alwaysBrandAccent, const std::optional<Rgb>& systemAccent);

/// Main thread only.
class ThemeUpdater {
public:
    ThemeUpdater(Theme& theme, Appearance& appearance, const UserDefaults& defaults);

    /// The user's choice may have changed.
    void update();

private:
    Theme& theme_;
    Appearance& appearance_;
    const UserDefaults& defaults_;
    std::unique_ptr<Appearance::Observation> observation_;
};

} // namespace norvane
