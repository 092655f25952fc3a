#include "platform/linux/bus/desktop_portal.h"

namespace norvane {

QDBusMessage portalCall(const QString& interface, const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalObjectPath,
                                                       "org.freedesktop.portal." + interface, method);
    call.setArguments(arguments);
    return call;
}

} // namespace norvane
