#include "platform/linux/network/tcp_network_probe.h"

#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHostAddress>
#include <QScopeGuard>
#include <QTcpSocket>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <netdb.h>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace norvane {

namespace {

using Addresses = QList<QHostAddress>;

struct Destination {
    Addresses addresses; ///< Empty: not found.
    std::uint16_t port = 0;
};

Addresses systemLookup(const std::string& host) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
    Addresses addresses;
    for (; found; found = found->ai_next)
        addresses.append(QHostAddress(found->ai_addr));
    return addresses;
}

/// getaddrinfo(3) takes as long as it wants. A thread that is late is left to itself: Qt's own lookups would
/// keep the process from ending.
Addresses boundedLookup(const std::string& host, const QDeadlineTimer& deadline) {
    std::packaged_task<Addresses()> task([host] { return systemLookup(host); });
    std::future<Addresses> result = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error&) { // the system has no thread left
        return {};
    }
    if (result.wait_for(std::chrono::milliseconds(deadline.remainingTime())) != std::future_status::ready)
        return {};
    return result.get();
}

/// The answer's arguments; empty when there is none of this signature in time. A connection for this question
/// alone: one that lasts would be lost with a bus that ends and comes back.
QVariantList askAvahi(const TcpNetworkProbe::OpenBus& openBus, const char* method,
                      const QVariantList& arguments, const QString& signature,
                      const QDeadlineTimer& deadline) {
    static std::atomic<int> questions = 0;
    const QString name = "norvane-network-" + QString::number(++questions);
    const QDBusConnection bus = openBus(name);
    const auto close = qScopeGuard([&name] { QDBusConnection::disconnectFromBus(name); });
    if (deadline.hasExpired())
        return {};
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.Avahi", "/", "org.freedesktop.Avahi.Server", method);
    call.setArguments(arguments);
    const QDBusMessage answer = bus.call(call, QDBus::Block, static_cast<int>(deadline.remainingTime()));
    return answer.type() == QDBusMessage::ReplyMessage && answer.signature() == signature ? answer.arguments()
                                                                                          : QVariantList();
}

// Of Avahi's D-Bus interface (avahi-common/defs.h, address.h).
const QVariant anyInterface = -1;
const QVariant anyProtocol = -1;
const QVariant noFlags = 0U;

QHostAddress addressOnInterface(const QVariant& address, const QVariant& interface) {
    QHostAddress result(address.toString());
    if (result.isLinkLocal())
        result.setScopeId(interface.toString());
    return result;
}

Destination resolve(const TcpNetworkProbe::OpenBus& openBus, const ServiceEndpoint& service,
                    const QDeadlineTimer& deadline) {
    const QVariantList answer = askAvahi(openBus, "ResolveService",
                                         {anyInterface, anyProtocol, QString::fromStdString(service.name),
                                          QString::fromStdString(service.type),
                                          QString::fromStdString(service.domain), anyProtocol, noFlags},
                                         "iissssisqaayu", deadline);
    if (answer.isEmpty())
        return {};
    return {{addressOnInterface(answer[7], answer[0])}, answer[8].value<std::uint16_t>()};
}

Destination resolve(const TcpNetworkProbe::OpenBus& openBus, const HostEndpoint& endpoint,
                    const QDeadlineTimer& deadline) {
    const QString host = QString::fromStdString(endpoint.host);
    QHostAddress literal;
    if (literal.setAddress(host))
        return {{literal}, endpoint.port};
    if (!host.endsWith(".local", Qt::CaseInsensitive))
        return {boundedLookup(endpoint.host, deadline), endpoint.port};
    // The system knows these names only with a module for them; a name server may be asked in vain for long.
    Addresses addresses = boundedLookup(endpoint.host, QDeadlineTimer(deadline.remainingTime() / 2));
    if (addresses.isEmpty()) {
        const QVariantList answer =
            askAvahi(openBus, "ResolveHostName", {anyInterface, anyProtocol, host, anyProtocol, noFlags},
                     "iisisu", deadline);
        if (!answer.isEmpty())
            addresses = {addressOnInterface(answer[4], answer[0])};
    }
    return {addresses, endpoint.port};
}

bool answers(const Destination& destination, const QDeadlineTimer& deadline) {
    // An event loop of this thread rather than waitForConnected(), which cannot wait for several sockets.
    QEventLoop loop;
    bool connected = false;
    auto pending = destination.addresses.size();
    std::vector<std::unique_ptr<QTcpSocket>> sockets;
    for (const QHostAddress& address : destination.addresses) {
        QTcpSocket& socket = *sockets.emplace_back(std::make_unique<QTcpSocket>());
        QObject::connect(&socket, &QTcpSocket::connected, &loop, [&] {
            connected = true;
            loop.quit();
        });
        QObject::connect(&socket, &QTcpSocket::errorOccurred, &loop, [&] {
            if (--pending == 0)
                loop.quit();
        });
        socket.connectToHost(address, destination.port);
    }
    QTimer::singleShot(static_cast<int>(deadline.remainingTime()), &loop, &QEventLoop::quit);
    if (!connected && pending > 0)
        loop.exec();
    return connected;
}

} // namespace

bool TcpNetworkProbe::canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const {
    const QDeadlineTimer deadline(static_cast<qint64>(timeoutSeconds * 1000));
    const Destination destination =
        std::visit([&](const auto& one) { return resolve(openBus_, one, deadline); }, endpoint);
    return answers(destination, deadline);
}

} // namespace norvane
