#include "platform/linux/bus/bus_link.h"

#include <QUuid>
#include <utility>

#include "platform/linux/bus/bus_probe.h"

namespace norvane {

namespace {

// Connections are known to Qt by name; one that was lost is never given again under its old one.
QString freshName() { return "norvane-" + QUuid::createUuid().toString(QUuid::WithoutBraces); }

constexpr std::chrono::milliseconds answerLimit{60}; // as for any service

} // namespace

QDBusConnection openBus(const std::string& address, const QString& name) {
    if (!busAnswers(address, answerLimit))
        return QDBusConnection(name); // one that nobody has opened
    return QDBusConnection::connectToBus(QString::fromStdString(address), name);
}

BusLink::BusLink(std::string address, std::chrono::milliseconds pauseBetweenAttempts)
    : address_(std::move(address)), pause_(pauseBetweenAttempts),
      lastAttempt_(std::chrono::steady_clock::now()), connection_(openBus(address_, freshName())) {
    retry_.setInterval(pause_);
    connect(&retry_, &QTimer::timeout, this, &BusLink::reopen);
    noticeLoss();
}

BusLink::~BusLink() { QDBusConnection::disconnectFromBus(connection_.name()); }

bool BusLink::ensureConnected() {
    if (!connection_.isConnected() && std::chrono::steady_clock::now() - lastAttempt_ >= pause_)
        reopen();
    return connection_.isConnected();
}

bool BusLink::answers() { return ensureConnected() && busAnswers(address_, answerLimit); }

void BusLink::subscribe(const QString& service, const QString& path, const QString& interface,
                        const QString& signal, QObject* receiver, const char* slot) {
    if (connection_.isConnected()) // Qt aborts the program on one that was lost
        connection_.connect(service, path, interface, signal, receiver, slot);
}

void BusLink::reopen() {
    lastAttempt_ = std::chrono::steady_clock::now();
    QDBusConnection::disconnectFromBus(connection_.name());
    connection_ = openBus(address_, freshName());
    if (!connection_.isConnected())
        return;
    retry_.stop();
    noticeLoss();
    Q_EMIT reopened();
}

void BusLink::lost() {
    if (!connection_.isConnected()) // else this came late, and the bus is back
        retry_.start();
}

void BusLink::noticeLoss() {
    // The connection itself sends this (the D-Bus reference, "org.freedesktop.DBus.Local").
    connection_.connect("", "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", this,
                        SLOT(lost()));
}

} // namespace norvane
