// Whether something answers at a network address.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace norvane {

/// A service announced over DNS-SD (RFC 6763), such as {"Office NAS", "_smb._tcp", "local"}.
struct ServiceEndpoint {
    std::string name;
    std::string type;
    std::string domain;

    bool operator==(const ServiceEndpoint&) const = default;
};

struct HostEndpoint {
    std::string host;
    std::uint16_t port = 0;

    bool operator==(const HostEndpoint&) const = default;
};

using NetworkEndpoint = std::variant<ServiceEndpoint, HostEndpoint>;

class NetworkProbe {
public:
    virtual ~NetworkProbe() = default;

    /// True when a TCP connection is established within the time, name resolution included. Blocks at most
    /// that long; never call it on the main thread.
    [[nodiscard]] virtual bool canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const = 0;
};

} // namespace norvane
