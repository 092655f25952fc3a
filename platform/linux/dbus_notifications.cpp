#include "platform/linux/dbus_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace norvane {

namespace {

constexpr uchar normalUrgency = 1;
constexpr int daemonsTimeout = -1; // how long it stays on screen is the daemon's choice

} // namespace

void DBusNotifications::post(const std::string& title, const std::string& body) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                       "org.freedesktop.Notifications", "Notify");
    const QVariantMap hints = {{"urgency", QVariant::fromValue(normalUrgency)},
                               {"desktop-entry", "org.norvane.Norvane"},
                               {"sound-name", "dialog-warning"}};
    // Escaped: most daemons take the body as markup.
    call.setArguments({"Norvane", 0U, "org.norvane.Norvane", QString::fromStdString(title),
                       QString::fromStdString(body).toHtmlEscaped(), QStringList(), hints, daemonsTimeout});
    bus.send(call);
}

} // namespace norvane
