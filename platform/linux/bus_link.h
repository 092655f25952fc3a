// A connection to a message bus that is opened anew after the bus was gone.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <chrono>
#include <functional>

namespace norvane {

/// Main thread, inside a running Qt event loop. Opening a bus that accepts connections and never answers
/// would hold the caller; one that is not there fails at once.
class BusLink final : public QObject {
    Q_OBJECT

public:
    /// Opens the bus as the connection of this name, such as by QDBusConnection::connectToBus.
    using Open = std::function<QDBusConnection(const QString& name)>;

    explicit BusLink(Open open, std::chrono::milliseconds pauseBetweenAttempts = std::chrono::seconds(30));
    ~BusLink() override;

    /// Whether the bus is there; where it is gone, tries to open it again, but not too often.
    bool ensureConnected();

    /// Of the latest attempt; changes before each reopened().
    [[nodiscard]] QDBusConnection connection() const { return connection_; }

Q_SIGNALS:
    /// A new connection, on which nothing is subscribed yet.
    void reopened();

private:
    const Open open_;
    const std::chrono::milliseconds pause_;
    std::chrono::steady_clock::time_point lastAttempt_;
    QDBusConnection connection_;
};

} // namespace norvane
