#include "ui/theme_updater.h"

namespace norvane {

QColor appAccentColor(bool alwaysBrandAccent, const std::optional<Rgb>& systemAccent) {
    if (alwaysBrandAccent || !systemAccent)
        return brandOrange;
    return QColor::fromRgbF(static_cast<float>(systemAccent->red), static_cast<float>(systemAccent->green),
                            static_cast<float>(systemAccent->blue));
}

ThemeUpdater::ThemeUpdater(Theme& theme, Appearance& appearance, UserDefaults& defaults,
                           BackupController& controller)
    : theme_(theme), appearance_(appearance), store_(defaults), controller_(controller),
      observation_(appearance.observe([this] { update(); })), subscription_(controller.subscribe([this] {
          if (controller_.state().accentEpoch != accentEpoch_)
              update();
      })) {
    update();
}

void ThemeUpdater::update() {
    accentEpoch_ = controller_.state().accentEpoch;
    const AppearanceSettings settings = appearance_.current();
    theme_.set(settings.dark, appAccentColor(store_.alwaysBrandAccent(), settings.accent));
}

} // namespace norvane
