#include "ui/kit/theme_updater.h"

#include <utility>

namespace norvane {

QColor appAccentColor(bool alwaysBrandAccent, const std::optional<Rgb>& systemAccent) {
    if (alwaysBrandAccent || !systemAccent)
        return brandOrange;
    return QColor::fromRgbF(static_cast<float>(systemAccent->red), static_cast<float>(systemAccent->green),
                            static_cast<float>(systemAccent->blue));
}

ThemeUpdater::ThemeUpdater(Theme& theme, Appearance& appearance, UserDefaults& defaults)
    : theme_(theme), appearance_(appearance), store_(defaults),
      observation_(appearance.observe([this] { update(); })) {
    update();
}

ThemeUpdater::ThemeUpdater(Theme& theme, Appearance& appearance, UserDefaults& defaults,
                           BackupController& controller)
    : ThemeUpdater(theme, appearance, defaults) {
    subscription_ =
        controller.subscribe([this, &controller, seen = controller.state().accentEpoch]() mutable {
            if (std::exchange(seen, controller.state().accentEpoch) != controller.state().accentEpoch)
                update();
        });
}

void ThemeUpdater::update() {
    const AppearanceSettings settings = appearance_.current();
    theme_.set(settings.dark, appAccentColor(store_.alwaysBrandAccent(), settings.accent));
}

} // namespace norvane
