#include "platform/linux/bus/desktop_portal.h"

#include <unistd.h>

namespace norvane {

bool insideFlatpak() { return access("/.flatpak-info", F_OK) == 0; }

QDBusMessage portalCall(const QString& interface, const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalObjectPath,
                                                       "org.freedesktop.portal." + interface, method);
    call.setArguments(arguments);
    return call;
}

} // namespace norvane
