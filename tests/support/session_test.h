// A user's session for tests: a private bus, and mocks of its services. Needs qt_test_main.cpp.
#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/test_peers.h"

#define SKIP_WITHOUT(program)                                                                                \
    if (!installed(program))                                                                                 \
    GTEST_SKIP() << (program) << " is not installed"

#define SKIP_WITHOUT_MOCKS()                                                                                 \
    if (!std::filesystem::exists("/usr/lib/python3/dist-packages/dbusmock"))                                 \
    GTEST_SKIP() << "python3-dbusmock is not installed"

namespace norvane {

class SessionTest : public testing::Test {
protected:
    /// As `eventually`, while events are handled.
    template <class Condition>
    [[nodiscard]] static bool soon(Condition holds, double seconds = 10) {
        return eventually(
            [&] {
                QCoreApplication::processEvents();
                return holds();
            },
            seconds);
    }

    [[nodiscard]] static bool soonPrinted(const PeerProcess& peer, const std::string& text) {
        return soon([&] { return peer.output().find(text) != std::string::npos; });
    }

    /// Handles the events that are on their way.
    static void settle() {
        (void)soon([] { return false; }, 0.2);
    }

    /// Lets a mock of the service send a signal; the arguments as `gdbus` takes them.
    void emit(const std::string& service, const std::string& path, const std::string& interface,
              const std::string& signal, const std::string& signature, const std::string& arguments) const {
        (void)bus.gdbus({"call", "--session", "--dest", service, "--object-path", path, "--method",
                         "org.freedesktop.DBus.Mock.EmitSignal", interface, signal, signature, arguments});
    }

    /// Python's standard mock of a service; prints every call that it gets.
    [[nodiscard]] std::vector<std::string> mock(const std::string& serviceTemplate,
                                                const std::string& parameters = "{}",
                                                const std::string& whichBus = "--session") const {
        return {"/usr/bin/python3", "-um",           "dbusmock",     whichBus,
                "--template",       serviceTemplate, "--parameters", parameters};
    }

    PrivateBus bus;
    QDBusConnection connection = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "test");

    ~SessionTest() override { QDBusConnection::disconnectFromBus("test"); }
};

} // namespace norvane
