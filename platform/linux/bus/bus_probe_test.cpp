#include "platform/linux/bus/bus_probe.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

#include "platform/linux/files/file_descriptor.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

FileDescriptor listenAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener.get(), 0), 0);
    return listener;
}

/// Of a server that says one thing and then nothing; null: it hangs up.
bool answersWith(const char* says) {
    const ScratchFolder folder;
    const FileDescriptor listener = listenAt(folder.path("bus"));
    std::thread server([&] {
        const FileDescriptor client(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        std::array<char, 64> bytes{};
        if (!says || !writeAll(client.get(), says))
            return;
        while (read(client.get(), bytes.data(), bytes.size()) > 0) {
        }
    });
    const bool answers = busAnswers("unix:path=" + folder.path("bus"), std::chrono::milliseconds(100));
    server.join();
    return answers;
}

TEST(BusProbe, TellsABusThatSpeaksFromOneThatDoesNot) {
    EXPECT_TRUE(answersWith("OK 1234\r\n"));
    EXPECT_TRUE(answersWith("REJECTED EXTERNAL\r\n")) << "it will not keep anybody waiting";
    EXPECT_FALSE(answersWith(nullptr));
    EXPECT_FALSE(answersWith(""));
    EXPECT_FALSE(answersWith("OK 1234"));
    EXPECT_FALSE(answersWith("HTTP/1.1 400 Bad Request\r\n"));
}

TEST(BusProbe, AsksWhereTheAddressSays) {
    const PrivateBus bus;
    const ScratchFolder folder;
    const FileDescriptor silent = listenAt(folder.path("silent bus"));
    const std::string silentAddress = "unix:path=" + folder.path("silent%20bus");
    const std::pair<std::string, bool> cases[] = {
        {bus.address(), true},
        {bus.address() + ",guid=12", true},
        {"unix:path=/nonexistent;" + bus.address(), true},
        {"unix:path=/nonexistent", false},
        {"unix:abstract=" + folder.path("nobody"), false},
        {silentAddress, false},
        {silentAddress + ";" + bus.address(), false}, // clients would stay with the first
        {"tcp:host=localhost,port=1", true},
        {"autolaunch:", true},
        {"unix:path=/" + std::string(200, 'x'), false},
        {"unix:path=%2", false},
        {"", false},
    };
    for (int round = 0; round < 2; ++round) // the second finds the silent one's queue full
        for (const auto& [address, answers] : cases)
            EXPECT_EQ(busAnswers(address, std::chrono::milliseconds(100)), answers) << address;
    bus.freeze();
    EXPECT_FALSE(busAnswers(bus.address(), std::chrono::milliseconds(100)));
}

TEST(BusProbe, HidesASilentSessionBusForAWhile) {
    const ScratchFolder folder;
    const FileDescriptor silent = listenAt(folder.path("bus"));
    const std::string silentAddress = "unix:path=" + folder.path("bus");
    const PrivateBus bus;
    for (const std::string& address : {silentAddress, bus.address()}) {
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
        {
            const SessionBusGuard guard(std::chrono::milliseconds(100));
            EXPECT_EQ(sessionBusAddress() == address, address == bus.address());
        }
        EXPECT_EQ(sessionBusAddress(), address);
    }
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    {
        const SessionBusGuard guard(std::chrono::milliseconds(100));
        EXPECT_FALSE(busAnswers(sessionBusAddress(), std::chrono::milliseconds(0)));
        EXPECT_NE(sessionBusAddress(), silentAddress);
    }
    EXPECT_EQ(sessionBusAddress(), silentAddress);
}

} // namespace

} // namespace norvane
