// The desktop's colours through org.freedesktop.portal.Settings.
#pragma once

#include <QDBusConnection>
#include <memory>

#include "platform/appearance.h"

namespace norvane {

/// Keys, by their namespaces: "accent-color" (three reals; outside 0 to 1 means none) and "color-scheme" (1
/// means dark) of "org.freedesktop.appearance"; where there is no accent, KDE's "AccentColor"
/// ("red,green,blue", each 0 to 255) of "org.kde.kdeglobals.General". A portal that comes later, or comes
/// again, is asked then. What it does not know, or gives in another form, counts as not chosen.
class PortalAppearance final : public Appearance {
public:
    /// `startsPortal`: a portal that does not run is started; else it is asked once somebody else has started
    /// it.
    PortalAppearance(const QDBusConnection& sessionBus, bool startsPortal);
    ~PortalAppearance() override;

    [[nodiscard]] AppearanceSettings current() const override;
    [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) override;

private:
    class Object;
    const std::unique_ptr<Object> object_;
};

} // namespace norvane
