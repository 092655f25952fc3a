// Whether a message bus answers, asked before anybody waits for it: opening one that accepts connections and
// says nothing holds the caller for half a minute, and with it every other connection of Qt's.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace norvane {

/// As clients choose them (the D-Bus reference, "Well-known Message Bus Instances").
[[nodiscard]] std::string sessionBusAddress();
[[nodiscard]] std::string systemBusAddress();

/// Whether the bus at this address (the D-Bus reference, "Server Addresses") speaks to a new client in time.
/// Only Unix sockets are asked; what listens anywhere else is taken to answer. Any thread.
[[nodiscard]] bool busAnswers(std::string_view address, std::chrono::milliseconds limit);

/// A bus may end while Qt asks it something, which libdbus takes for a fault of the program and ends it with
/// SIGABRT; after this it only prints a line. To be called before any bus is opened.
void surviveLostBuses();

/// Hides a session bus that does not answer from the process. Made before the QGuiApplication, whose plugins
/// open the bus, too, and ended once Qt has tried: what Qt could not open stays closed. Main thread.
class SessionBusGuard {
public:
    explicit SessionBusGuard(std::chrono::milliseconds limit);
    ~SessionBusGuard();
    SessionBusGuard(const SessionBusGuard&) = delete;
    SessionBusGuard& operator=(const SessionBusGuard&) = delete;

private:
    bool hidden_ = false;
    std::optional<std::string> earlierAddress_;
};

} // namespace norvane
