#include "platform/linux/tcp_network_probe.h"

#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

namespace norvane {

bool TcpNetworkProbe::canConnect(const NetworkEndpoint& endpoint, double timeoutSeconds) const {
    const auto* host = std::get_if<HostEndpoint>(&endpoint);
    if (!host)
        return false;
    // An event loop of this thread rather than waitForConnected(), which looks up names outside its time
    // limit.
    QEventLoop loop;
    QTcpSocket socket;
    QObject::connect(&socket, &QTcpSocket::connected, &loop, &QEventLoop::quit);
    QObject::connect(&socket, &QTcpSocket::errorOccurred, &loop, &QEventLoop::quit);
    QTimer::singleShot(static_cast<int>(timeoutSeconds * 1000), &loop, &QEventLoop::quit);
    socket.connectToHost(QString::fromStdString(host->host), host->port);
    loop.exec();
    const bool connected = socket.state() == QAbstractSocket::ConnectedState;
    socket.abort();
    return connected;
}

} // namespace norvane
