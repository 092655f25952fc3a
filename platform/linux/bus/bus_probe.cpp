#include "platform/linux/bus/bus_probe.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "platform/text/escapes.h"

namespace norvane {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

constexpr auto sessionVariable = "DBUS_SESSION_BUS_ADDRESS";

std::optional<std::string> variable(const char* name) {
    const char* const value = std::getenv(name);
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

std::string userBusSocket() { return variable("XDG_RUNTIME_DIR").value_or("") + "/bus"; }

/// Takes what stands before the separator off the text, and the separator.
std::string_view takeUntil(char separator, std::string_view& text) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

/// As an address' value, where "%20" is a space.
std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::string_view plainMarks = "-_/.\\*";
    std::string value;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x80 && std::isalnum(byte) != 0) || plainMarks.find(c) != std::string_view::npos) {
            value += c;
        } else {
            ((value += '%') += digits[byte >> 4]) += digits[byte & 15];
        }
    }
    return value;
}

/// The name as bind(2) takes it, that of an abstract socket with a zero byte in front; none: another kind of
/// address.
std::optional<std::string> unixSocket(std::string_view address) {
    if (takeUntil(':', address) != "unix")
        return std::nullopt;
    while (!address.empty()) {
        std::string_view value = takeUntil(',', address);
        const std::string_view key = takeUntil('=', value);
        if (key == "path")
            return withoutEscapes(value, "%", 2, 16);
        if (key == "abstract")
            return std::string(1, '\0') + withoutEscapes(value, "%", 2, 16);
    }
    return std::nullopt;
}

/// Never waits. A server that has stopped accepting lets its clients wait in connect(2) when its queue is
/// full; the socket is then one on which nobody will ever answer.
FileDescriptor connectTo(const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() >= sizeof address.sun_path)
        return {};
    std::memcpy(address.sun_path, name.data(), name.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket ||
        (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), size) != 0 && errno != EAGAIN))
        return {};
    return socket;
}

bool waitUntilReadable(int socket, Deadline end) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        pollfd readable{.fd = socket, .events = POLLIN, .revents = 0};
        const int count = poll(&readable, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
        if (count >= 0 || errno != EINTR)
            return count > 0;
    }
}

/// The beginning of the Authentication Protocol: the server's answer decides nothing here, it only has to be
/// one.
bool serverSpeaks(int socket, Deadline end) {
    std::string greeting(1, '\0');
    greeting += "AUTH EXTERNAL ";
    for (const char digit : std::to_string(geteuid()))
        (greeting += '3') += digit; // hexadecimal
    greeting += "\r\n";
    if (send(socket, greeting.data(), greeting.size(), MSG_NOSIGNAL) != std::ssize(greeting))
        return false;
    std::string line;
    std::array<char, 128> chunk{};
    while (line.find('\n') == std::string::npos && line.size() < chunk.size()) {
        if (!waitUntilReadable(socket, end))
            return false;
        const ssize_t count = recv(socket, chunk.data(), chunk.size(), 0);
        if (count <= 0)
            return false;
        line.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return line.starts_with("OK ") || line.starts_with("REJECTED");
}

} // namespace

std::string sessionBusAddress() {
    if (const auto address = variable(sessionVariable))
        return *address;
    if (const std::string socket = userBusSocket(); access(socket.c_str(), F_OK) == 0)
        return "unix:path=" + escaped(socket); // "runtime=yes" is for servers alone
    return "autolaunch:";
}

std::string systemBusAddress() {
    return variable("DBUS_SYSTEM_BUS_ADDRESS").value_or("unix:path=/run/dbus/system_bus_socket");
}

bool busAnswers(std::string_view address, std::chrono::milliseconds limit) {
    const Deadline end = std::chrono::steady_clock::now() + limit;
    while (!address.empty()) {
        const auto name = unixSocket(takeUntil(';', address));
        if (!name)
            return true;
        // Clients stay with the first that accepts them.
        if (const FileDescriptor socket = connectTo(*name))
            return serverSpeaks(socket.get(), end);
    }
    return false;
}

void surviveLostBuses() {
    setenv("DBUS_FATAL_WARNINGS", "0", 0); // read by libdbus at its first complaint
}

SessionBusGuard::SessionBusGuard(std::chrono::milliseconds limit) {
    if (busAnswers(sessionBusAddress(), limit))
        return;
    hidden_ = true;
    earlierAddress_ = variable(sessionVariable);
    setenv(sessionVariable, "unix:path=/nonexistent", 1);
}

SessionBusGuard::~SessionBusGuard() {
    if (!hidden_)
        return;
    if (earlierAddress_)
        setenv(sessionVariable, earlierAddress_->c_str(), 1);
    else
        unsetenv(sessionVariable);
}

} // namespace norvane
