#include "platform/linux/watched_properties.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <limits>
#include <utility>

namespace norvane {

namespace {

constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

WatchedProperties::WatchedProperties(BusLink& bus, QString service, QString path, QString interface)
    : bus_(bus), service_(std::move(service)), path_(std::move(path)), interface_(std::move(interface)) {
    connect(&bus_, &BusLink::reopened, this, &WatchedProperties::subscribe);
    subscribe();
}

void WatchedProperties::subscribe() {
    QDBusConnection connection = bus_.connection();
    ownerWatcher_ = std::make_unique<QDBusServiceWatcher>(service_, connection);
    connect(ownerWatcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, &WatchedProperties::ask);
    // Without a sender: given one, Qt asks the bus for its owner and waits for the answer.
    connection.connect({}, path_, propertiesInterface, "PropertiesChanged", {interface_}, "sa{sv}as", this,
                       SLOT(propertiesChanged(QDBusMessage)));
    ask();
}

/// Forgets everything first: it may be another service than the one that told it.
void WatchedProperties::ask() {
    values_.clear();
    sender_.clear();
    auto call = QDBusMessage::createMethodCall(service_, path_, propertiesInterface, "GetAll");
    call << interface_;
    call.setAutoStartService(false);
    // No limit: nobody waits, and a service that was frozen answers when it goes on.
    constexpr int never = std::numeric_limits<int>::max();
    question_ = std::make_unique<QDBusPendingCallWatcher>(bus_.connection().asyncCall(call, never));
    connect(question_.get(), &QDBusPendingCallWatcher::finished, this, &WatchedProperties::takeAnswer);
}

void WatchedProperties::takeAnswer() {
    const QDBusMessage answer = question_->reply();
    question_.release()->deleteLater(); // it is the one that calls
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "a{sv}")
        return;
    sender_ = answer.service();
    values_ = qdbus_cast<QVariantMap>(answer.arguments().constFirst());
}

void WatchedProperties::propertiesChanged(const QDBusMessage& signal) {
    if (signal.service() != sender_)
        return; // somebody else's, or told before the answer, which holds it already
    const QList<QVariant> arguments = signal.arguments();
    values_.insert(qdbus_cast<QVariantMap>(arguments.at(1)));
    if (!arguments.at(2).toStringList().isEmpty())
        ask(); // these have changed, too, but were not told
}

} // namespace norvane
