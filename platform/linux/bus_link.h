// A connection to a message bus that is opened anew after the bus was gone.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <chrono>
#include <functional>

namespace norvane {

/// Main thread, inside a running Qt event loop. Opening a bus that accepts connections and never answers
/// would hold the caller; one that is not there fails at once.
class BusLink {
public:
    /// Opens the bus as the connection of this name, such as by QDBusConnection::connectToBus.
    using Open = std::function<QDBusConnection(const QString& name)>;

    explicit BusLink(Open open, std::chrono::milliseconds pauseBetweenAttempts = std::chrono::seconds(30));
    ~BusLink();
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    /// Whether the bus is there; where it is gone, tries to open it again, but not too often.
    bool ensureConnected();

    /// Of the latest attempt.
    [[nodiscard]] QDBusConnection connection() const { return connection_; }

private:
    const Open open_;
    const std::chrono::milliseconds pause_;
    std::chrono::steady_clock::time_point lastAttempt_;
    QDBusConnection connection_;
};

} // namespace norvane
