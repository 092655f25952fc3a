// The last known D-Bus properties of another program's object (org.freedesktop.DBus.Properties).
#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <memory>
#include <optional>

#include "platform/linux/bus_link.h"

namespace norvane {

/// Asks once and listens from then on, so that reading never waits for the other program, however late or
/// little that answers. Starts no service. Main thread.
class WatchedProperties final : public QObject {
    Q_OBJECT

public:
    WatchedProperties(BusLink& bus, QString service, QString path, QString interface);

    /// None: the service or the bus is away, has not answered yet, or the property has another type.
    template <class Value>
    [[nodiscard]] std::optional<Value> get(const char* property) {
        if (!bus_.ensureConnected())
            return std::nullopt;
        const QVariant value = values_.value(property);
        if (value.metaType() != QMetaType::fromType<Value>())
            return std::nullopt;
        return value.value<Value>();
    }

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage& signal);

private:
    void subscribe();
    void ask();
    void takeAnswer();

    BusLink& bus_;
    const QString service_;
    const QString path_;
    const QString interface_;
    QVariantMap values_;
    QString sender_; // the unique name that values_ come from
    std::unique_ptr<QDBusServiceWatcher> ownerWatcher_;
    std::unique_ptr<QDBusPendingCallWatcher> question_;
};

} // namespace norvane
