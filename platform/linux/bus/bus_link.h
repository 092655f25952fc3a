// A connection to a message bus that is opened anew after the bus was gone.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <string>

namespace norvane {

/// As QDBusConnection::connectToBus, but a bus that does not answer a new client within 60 milliseconds
/// counts as one that is not there. Any thread.
[[nodiscard]] QDBusConnection openBus(const std::string& address, const QString& name);

/// Main thread, inside a running Qt event loop.
class BusLink final : public QObject {
    Q_OBJECT

public:
    explicit BusLink(std::string address,
                     std::chrono::milliseconds pauseBetweenAttempts = std::chrono::seconds(30));
    ~BusLink() override;

    /// Whether the bus is there; where it is gone, tries to open it again, but not too often.
    bool ensureConnected();

    /// Whether it is there and answers now; asks, and waits for 60 milliseconds at the most.
    bool answers();

    /// Of the latest attempt.
    [[nodiscard]] QDBusConnection connection() const { return connection_; }

    /// As QDBusConnection::connect; to be called again for each new connection.
    void subscribe(const QString& service, const QString& path, const QString& interface,
                   const QString& signal, QObject* receiver, const char* slot);

Q_SIGNALS:
    /// There is a new connection, which knows nothing of what was subscribed to on the one before.
    void reopened();

private:
    void reopen();
    void noticeLoss();
    Q_SLOT void lost();

    const std::string address_;
    const std::chrono::milliseconds pause_;
    std::chrono::steady_clock::time_point lastAttempt_;
    QDBusConnection connection_;
    QTimer retry_; // runs while a bus that was there is gone
};

} // namespace norvane
