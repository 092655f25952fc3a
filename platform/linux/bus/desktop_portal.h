// The desktop's services behind org.freedesktop.portal.Desktop (xdg-desktop-portal), which are the same on
// every desktop.
#pragma once

#include <QDBusMessage>
#include <QVariant>

namespace norvane {

inline constexpr auto portalService = "org.freedesktop.portal.Desktop";
inline constexpr auto portalObjectPath = "/org/freedesktop/portal/desktop";

/// A call of "org.freedesktop.portal.<interface>".
[[nodiscard]] QDBusMessage portalCall(const QString& interface, const QString& method,
                                      const QVariantList& arguments);

} // namespace norvane
