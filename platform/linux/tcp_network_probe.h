// Whether something answers at a network address, over TCP.
#pragma once

#include "platform/network_probe.h"

namespace norvane {

/// Services announced over DNS-SD are not resolved yet: they count as not answering.
class TcpNetworkProbe final : public NetworkProbe {
public:
    [[nodiscard]] bool canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const override;
};

} // namespace norvane
