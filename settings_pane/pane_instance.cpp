#include "settings_pane/pane_instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

namespace norvane {

namespace {

constexpr auto busName = "org.norvane.TimeMachineSettings";
constexpr auto objectPath = "/org/norvane/TimeMachineSettings";

bool activateTheOther(const QDBusConnection& bus, const QVariantMap& platformData) {
    constexpr int milliseconds = 5000; // it may have just begun
    QDBusMessage call =
        QDBusMessage::createMethodCall(busName, objectPath, "org.freedesktop.Application", "Activate");
    call.setArguments({platformData});
    return bus.call(call, QDBus::Block, milliseconds).type() == QDBusMessage::ReplyMessage;
}

} // namespace

PaneInstance::PaneInstance(QVariantMap platformData) : platformData_(std::move(platformData)) {
    // Before the name: whoever finds that finds the object, too.
    QDBusConnection::sessionBus().registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
}

bool PaneInstance::handedOver() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    constexpr int tries = 2; // the other may end while it is asked
    for (int i = 0; i < tries && bus.isConnected(); ++i) {
        if (bus.interface()->registerService(busName).value() !=
            QDBusConnectionInterface::ServiceNotRegistered)
            return false;
        if (activateTheOther(bus, platformData_))
            return true;
    }
    return false;
}

void PaneInstance::retire() {
    // unregisterService() would wait for the bus.
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                       "org.freedesktop.DBus", "ReleaseName");
    call.setArguments({QString(busName)});
    QDBusConnection::sessionBus().send(call);
}

void PaneInstance::Activate(const QVariantMap& platformData) { Q_EMIT activated(platformData); }

void PaneInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Q_EMIT activated(platformData);
}

} // namespace norvane
