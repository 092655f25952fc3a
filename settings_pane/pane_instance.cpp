#include "settings_pane/pane_instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

namespace norvane {

namespace {

constexpr auto busName = "org.norvane.TimeMachineSettings";
constexpr auto objectPath = "/org/norvane/TimeMachineSettings";

} // namespace

bool PaneInstance::handedOver() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() ||
        bus.interface()->registerService(busName).value() != QDBusConnectionInterface::ServiceNotRegistered)
        return false;
    QDBusMessage call =
        QDBusMessage::createMethodCall(busName, objectPath, "org.freedesktop.Application", "Activate");
    call.setArguments({QVariantMap()});
    constexpr int milliseconds = 2000;
    return bus.call(call, QDBus::Block, milliseconds).type() == QDBusMessage::ReplyMessage;
}

PaneInstance::PaneInstance(std::function<void()> activate) : activate_(std::move(activate)) {
    QDBusConnection::sessionBus().registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
}

void PaneInstance::Activate(const QVariantMap& /*platformData*/) { activate_(); }

void PaneInstance::Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) { activate_(); }

} // namespace norvane
