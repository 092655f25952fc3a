// The desktop's services behind org.freedesktop.portal.Desktop (xdg-desktop-portal), the only road to them
// out of a Flatpak sandbox.
#pragma once

#include <QDBusMessage>
#include <QVariant>

namespace norvane {

inline constexpr auto portalService = "org.freedesktop.portal.Desktop";
inline constexpr auto portalObjectPath = "/org/freedesktop/portal/desktop";

/// Whether this process runs inside a Flatpak sandbox (flatpak-metadata(5): /.flatpak-info).
[[nodiscard]] bool insideFlatpak();

/// A call of "org.freedesktop.portal.<interface>".
[[nodiscard]] QDBusMessage portalCall(const QString& interface, const QString& method,
                                      const QVariantList& arguments);

} // namespace norvane
