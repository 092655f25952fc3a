#include "platform/linux/bus/properties_question.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>

namespace norvane {

namespace {

QDBusPendingCall ask(BusLink& bus, const QString& service, const QString& path, const QString& interface,
                     std::chrono::milliseconds limit) {
    if (!bus.ensureConnected())
        return QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, "no bus"));
    auto call = QDBusMessage::createMethodCall(service, path, "org.freedesktop.DBus.Properties", "GetAll");
    call << interface;
    call.setAutoStartService(false);
    return bus.connection().asyncCall(call, static_cast<int>(limit.count()));
}

} // namespace

PropertiesQuestion::PropertiesQuestion(BusLink& bus, const QString& service, const QString& path,
                                       const QString& interface, std::chrono::milliseconds limit)
    : question_(ask(bus, service, path, interface, limit)) {}

const QVariantMap& PropertiesQuestion::values() {
    if (!values_) {
        question_.waitForFinished();
        const QDBusMessage answer = question_.reply();
        const bool told = answer.type() == QDBusMessage::ReplyMessage && answer.signature() == "a{sv}";
        values_ = told ? qdbus_cast<QVariantMap>(answer.arguments().constFirst()) : QVariantMap();
    }
    return *values_;
}

} // namespace norvane
