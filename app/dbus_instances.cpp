#include "app/dbus_instances.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <utility>

#include "app/application_interface.h"
#include "platform/linux/desktop/activation_token.h"

namespace norvane {

namespace {

constexpr int callTimeoutMilliseconds = 500;

QDBusMessage busCall(const char* method, const QString& argument) {
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                       "org.freedesktop.DBus", method);
    call.setArguments({argument});
    return call;
}

} // namespace

DBusInstances::DBusInstances(QString activationToken)
    : activationToken_(std::move(activationToken)), bus_(QDBusConnection::sessionBus()) {
    if (!bus_.isConnected())
        return;
    const auto reply =
        bus_.interface()->registerService(applicationBusName, QDBusConnectionInterface::QueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    identified_ = reply.isValid() &&
                  reply.value() != QDBusConnectionInterface::RegisterServiceReply::ServiceNotRegistered;
}

std::int64_t DBusInstances::ownProcessId() const { return QCoreApplication::applicationPid(); }

std::vector<std::int64_t> DBusInstances::others() const {
    std::vector<std::int64_t> processIds;
    for (const Owner& owner : otherOwners())
        processIds.push_back(owner.processId);
    return processIds;
}

std::vector<DBusInstances::Owner> DBusInstances::otherOwners() const {
    const QDBusReply<QStringList> names =
        bus_.call(busCall("ListQueuedOwners", applicationBusName), QDBus::Block, callTimeoutMilliseconds);
    std::vector<Owner> owners;
    for (const QString& name : names.value()) {
        if (name == bus_.baseService())
            continue;
        const QDBusReply<uint> processId =
            bus_.call(busCall("GetConnectionUnixProcessID", name), QDBus::Block, callTimeoutMilliseconds);
        if (processId.isValid())
            owners.push_back({name, processId.value()});
    }
    return owners;
}

void DBusInstances::leave() {
    if (identified_)
        bus_.interface()->unregisterService(applicationBusName);
}

bool DBusInstances::activate(std::int64_t processId) {
    for (const Owner& owner : otherOwners()) {
        if (owner.processId != processId)
            continue;
        QDBusMessage call = QDBusMessage::createMethodCall(owner.uniqueName, applicationObjectPath,
                                                           "org.freedesktop.Application", "Activate");
        call.setArguments({platformDataWith(activationToken_)});
        // Waited for: this process ends right after, and an unsent message with it.
        return bus_.call(call, QDBus::Block, callTimeoutMilliseconds).type() == QDBusMessage::ReplyMessage;
    }
    return false;
}

} // namespace norvane
