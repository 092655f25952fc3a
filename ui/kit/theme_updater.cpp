#include "ui/kit/theme_updater.h"

#include "platform/brand_accent.h"

namespace norvane {

QColor appAccentColor(bool alwaysBrandAccent, const std::optional<Rgb>& systemAccent) {
    if (alwaysBrandAccent || !systemAccent)
        return brandOrange;
    return QColor::fromRgbF(static_cast<float>(systemAccent->red), static_cast<float>(systemAccent->green),
                            static_cast<float>(systemAccent->blue));
}

ThemeUpdater::ThemeUpdater(Theme& theme, Appearance& appearance, const UserDefaults& defaults)
    : theme_(theme), appearance_(appearance), defaults_(defaults),
      observation_(appearance.observe([this] { update(); })) {
    update();
}

void ThemeUpdater::update() {
    const AppearanceSettings settings = appearance_.current();
    theme_.set(settings.dark, appAccentColor(alwaysBrandAccent(defaults_), settings.accent));
}

} // namespace norvane
