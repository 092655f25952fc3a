#include "platform/linux/bus_link.h"

#include <QUuid>
#include <utility>

namespace norvane {

namespace {

// Connections are known to Qt by name; one that was lost is never given again under its old one.
QString freshName() { return "norvane-" + QUuid::createUuid().toString(QUuid::WithoutBraces); }

} // namespace

BusLink::BusLink(Open open, std::chrono::milliseconds pauseBetweenAttempts)
    : open_(std::move(open)), pause_(pauseBetweenAttempts), lastAttempt_(std::chrono::steady_clock::now()),
      connection_(open_(freshName())) {}

BusLink::~BusLink() { QDBusConnection::disconnectFromBus(connection_.name()); }

bool BusLink::ensureConnected() {
    if (connection_.isConnected())
        return true;
    const auto now = std::chrono::steady_clock::now();
    if (now - lastAttempt_ < pause_)
        return false;
    lastAttempt_ = now;
    QDBusConnection::disconnectFromBus(connection_.name());
    connection_ = open_(freshName());
    return connection_.isConnected();
}

} // namespace norvane
