#include "platform/linux/network/tcp_network_probe.h"

#include <arpa/inet.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "tests/support/test_peers.h"

namespace norvane {

namespace {

/// A socket on the loopback interface; the port is chosen by the system.
class LoopbackSocket {
public:
    explicit LoopbackSocket(int type) : fd_(socket(AF_INET, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
    ~LoopbackSocket() { close(fd_); }
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    void bindTo(std::uint16_t port) {
        address_.sin_port = htons(port);
        ASSERT_EQ(bind(fd_, reinterpret_cast<sockaddr*>(&address_), sizeof address_), 0);
        socklen_t size = sizeof address_;
        getsockname(fd_, reinterpret_cast<sockaddr*>(&address_), &size);
    }
    void listenFor(int connections) const { listen(fd_, connections); }
    void connectTo(const LoopbackSocket& other) const {
        (void)!connect(fd_, reinterpret_cast<const sockaddr*>(&other.address_), sizeof address_);
    }
    [[nodiscard]] std::uint16_t port() const { return ntohs(address_.sin_port); }

private:
    sockaddr_in address_{
        .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    int fd_;
};

struct Case {
    const char* what;
    NetworkEndpoint endpoint;
    double limit; ///< Seconds.
    bool answers;
};

void expect(const TcpNetworkProbe& probe, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(probe.canConnect(c.endpoint, c.limit), c.answers);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::duration<double>(c.limit + 5));
    }
}

/// Runs the test in a thread with a network and mounts of its own, which its processes share; a background
/// thread is also where the probe belongs. False: this user may not have them.
bool inOwnNetwork(const std::function<void()>& test) {
    bool allowed = false;
    std::thread([&] {
        allowed = unshare(CLONE_NEWNET | CLONE_NEWNS) == 0 &&
                  mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        if (!allowed)
            return;
        PeerProcess({"sh", "-c", "ip link set lo up && ip link set lo multicast on"}).waitForExit();
        test();
    }).join();
    return allowed;
}

const TcpNetworkProbe withoutBus{[](const QString& name) { return QDBusConnection(name); }};

TEST(TcpNetworkProbe, TellsWhetherAHostAnswers) {
    LoopbackSocket open(SOCK_STREAM);
    open.bindTo(0);
    open.listenFor(16);
    LoopbackSocket closed(SOCK_STREAM);
    closed.bindTo(0);
    LoopbackSocket full(SOCK_STREAM);
    full.bindTo(0);
    full.listenFor(0);
    std::vector<std::unique_ptr<LoopbackSocket>> waiting; // the queue is full: what comes next is dropped
    for (int i = 0; i < 3; ++i)
        waiting.emplace_back(std::make_unique<LoopbackSocket>(SOCK_STREAM))->connectTo(full);
    expect(withoutBus, {{"address", HostEndpoint{"127.0.0.1", open.port()}, 5, true},
                        {"name with several addresses", HostEndpoint{"localhost", open.port()}, 5, true},
                        {"closed port", HostEndpoint{"127.0.0.1", closed.port()}, 5, false},
                        {"full queue", HostEndpoint{"127.0.0.1", full.port()}, 0.3, false},
                        {"unknown name", HostEndpoint{"no-such-host.invalid", 445}, 1, false},
                        {"no name", HostEndpoint{"", open.port()}, 1, false},
                        {"service without a bus", ServiceEndpoint{"NAS", "_smb._tcp", "local"}, 1, false}});
}

TEST(TcpNetworkProbe, DoesNotWaitForANameServerThatIsSilent) {
    const bool allowed = inOwnNetwork([] {
        LoopbackSocket nameServer(SOCK_DGRAM);
        nameServer.bindTo(53);
        const ScratchFolder folder;
        std::ofstream(folder.path("resolv.conf")) << "nameserver 127.0.0.1\n";
        ASSERT_EQ(mount(folder.path("resolv.conf").c_str(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr),
                  0);
        expect(withoutBus, {{"silent name server", HostEndpoint{"host.example", 445}, 0.3, false}});
    });
    if (!allowed)
        GTEST_SKIP() << "this user may not make a network of its own";
}

TEST(TcpNetworkProbe, FindsWhatAvahiKnows) {
    if (!installed("avahi-daemon") || !installed("avahi-publish"))
        GTEST_SKIP() << "avahi-daemon or avahi-utils is not installed";
    const bool allowed = inOwnNetwork([] {
        ASSERT_EQ(mount("tmpfs", "/run", "tmpfs", 0, nullptr),
                  0); // where a daemon of the machine has its files
        PrivateBus bus;
        const ScratchFolder folder;
        std::ofstream(folder.path("avahi.conf")) << "[server]\nhost-name=nas\nallow-interfaces=lo\n";
        const std::vector<std::string> avahi = {"avahi-daemon",   "-f",          folder.path("avahi.conf"),
                                                "--no-drop-root", "--no-chroot", "--no-rlimits"};
        std::optional<PeerProcess> daemon(std::in_place, avahi, bus.variables());
        ASSERT_TRUE(daemon->waitForOutput("startup complete")) << daemon->output();
        LoopbackSocket open(SOCK_STREAM);
        open.bindTo(0);
        open.listenFor(16);
        const PeerProcess publisher(
            {"avahi-publish", "-s", "Office NAS", "_smb._tcp", std::to_string(open.port())}, bus.variables());
        const PeerProcess closed({"avahi-publish", "-s", "Closed NAS", "_smb._tcp", "9"}, bus.variables());
        ASSERT_TRUE(publisher.waitForOutput("Established")) << publisher.output();
        ASSERT_TRUE(closed.waitForOutput("Established")) << closed.output();
        const TcpNetworkProbe probe([&bus](const QString& name) {
            return QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
        });
        const ServiceEndpoint service{"Office NAS", "_smb._tcp", "local"};
        expect(probe, {{"service", service, 5, true},
                       {"service that does not listen", ServiceEndpoint{"Closed NAS", "_smb._tcp", "local"},
                        5, false},
                       {"service of another type", ServiceEndpoint{"Office NAS", "_afpovertcp._tcp", "local"},
                        1, false},
                       {"host", HostEndpoint{"nas.local", open.port()}, 5, true},
                       {"unknown host", HostEndpoint{"other.local", open.port()}, 1, false}});
        daemon->freeze();
        expect(probe, {{"frozen", service, 0.5, false}});
        daemon->goOn();
        expect(probe, {{"going on", service, 5, true}});
        bus.stop();
        expect(probe, {{"the bus is gone", service, 5, false}});
        bus.restart();
        daemon.reset();
        daemon.emplace(avahi, bus.variables());
        ASSERT_TRUE(daemon->waitForOutput("startup complete")) << daemon->output();
        expect(probe, {{"the bus came back", HostEndpoint{"nas.local", open.port()}, 5, true}});
    });
    if (!allowed)
        GTEST_SKIP() << "this user may not make a network of its own";
}

} // namespace

} // namespace norvane
