// Whether something answers at a network address, over TCP.
#pragma once

#include <QDBusConnection>
#include <functional>
#include <utility>

#include "platform/network_probe.h"

namespace norvane {

/// Services announced over DNS-SD, and names below ".local" that the system does not know, are resolved by
/// Avahi (org.freedesktop.Avahi.Server, avahi-daemon(8)); without it they do not answer. All addresses of a
/// name are tried at once. Any background thread.
class TcpNetworkProbe final : public NetworkProbe {
public:
    /// Opens the system bus as the connection of this name, such as by `openBus`.
    using OpenBus = std::function<QDBusConnection(const QString& name)>;

    explicit TcpNetworkProbe(OpenBus openBus) : openBus_(std::move(openBus)) {}

    [[nodiscard]] bool canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const override;

private:
    const OpenBus openBus_;
};

} // namespace norvane
