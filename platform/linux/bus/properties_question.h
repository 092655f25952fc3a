// The D-Bus properties of another program's object (org.freedesktop.DBus.Properties).
#pragma once

#include <QDBusPendingCall>
#include <QString>
#include <QVariantMap>
#include <chrono>
#include <optional>

#include "platform/linux/bus/bus_link.h"

namespace norvane {

/// Asked when it is made; reading waits for the answer. Several that are asked before the first is read
/// wait together. Starts no service. Main thread.
class PropertiesQuestion {
public:
    /// `limit`: for the answer, from now on.
    PropertiesQuestion(BusLink& bus, const QString& service, const QString& path, const QString& interface,
                       std::chrono::milliseconds limit);

    /// None: the service or the bus is away, does not answer in time, or the property has another type.
    template <class Value>
    [[nodiscard]] std::optional<Value> get(const char* property) {
        const QVariant value = values().value(property);
        if (value.metaType() != QMetaType::fromType<Value>())
            return std::nullopt;
        return value.value<Value>();
    }

private:
    [[nodiscard]] const QVariantMap& values();

    QDBusPendingCall question_;
    std::optional<QVariantMap> values_; // none: not waited for yet
};

} // namespace norvane
