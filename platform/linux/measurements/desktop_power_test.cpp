#include "platform/linux/measurements/desktop_power.h"

#include <fstream>
#include <map>

#include "platform/linux/measurements/power_supplies.h"
#include "tests/support/session_test.h"

namespace norvane {

namespace {

using Attributes = std::map<std::string, std::string>;

void writeSupply(const ScratchFolder& folder, const std::string& name, const Attributes& attributes) {
    std::filesystem::create_directory(folder.path(name));
    for (const auto& [attribute, value] : attributes)
        std::ofstream(folder.path(name) + "/" + attribute) << value << "\n";
}

TEST(PowerSupplies, AreReadAsTheKernelListsThem) {
    const Attributes battery = {{"type", "Battery"}, {"present", "1"}, {"capacity", "17"}};
    Attributes discharging = battery;
    discharging["status"] = "Discharging";
    struct Case {
        const char* what;
        std::map<std::string, Attributes> supplies;
        PowerState expected;
    };
    const Case cases[] = {
        {"a desktop", {}, {true, std::nullopt, false}},
        {"only a mouse", {{"hid", {{"type", "Battery"}, {"scope", "Device"}, {"capacity", "3"}}}}, {}},
        {"unplugged", {{"AC", {{"type", "Mains"}, {"online", "0"}}}, {"BAT0", battery}}, {false, 17, false}},
        {"charging by USB",
         {{"AC", {{"type", "Mains"}, {"online", "0"}}},
          {"BAT0", battery},
          {"ucsi", {{"type", "USB"}, {"online", "1"}}}},
         {true, 17, false}},
        {"no adapter listed", {{"BAT0", discharging}}, {false, 17, false}},
        {"a slot without battery", {{"BAT0", {{"type", "Battery"}, {"present", "0"}}}}, {}},
        {"nonsense", {{"BAT0", {{"type", "Battery"}, {"capacity", "1x"}}}}, {true, std::nullopt, false}},
        {"too much", {{"BAT0", {{"type", "Battery"}, {"capacity", "103"}}}}, {true, 100, false}},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        for (const auto& [name, attributes] : c.supplies)
            writeSupply(folder, name, attributes);
        EXPECT_EQ(powerFromSupplies(folder.path()), c.expected) << c.what;
    }
    EXPECT_EQ(powerFromSupplies("/nonexistent"), PowerState{});
}

class DesktopPowerTest : public SessionTest {
protected:
    DesktopPowerTest() { writeSupply(supplies_, "BAT0", {{"type", "Battery"}, {"capacity", "55"}}); }

    [[nodiscard]] static bool becomes(DesktopPower& power, const PowerState& expected, double seconds = 10) {
        return soon([&] { return power.state() == expected; }, seconds);
    }
    [[nodiscard]] bool becomes(const PowerState& expected) { return becomes(power_, expected); }

    /// A service that owns the name and has one object.
    PeerProcess service(const std::string& name, const std::string& path) {
        return PeerProcess({"/usr/bin/python3", "-m", "dbusmock", "--system", name, path, name},
                           bus.variables());
    }
    void call(const std::string& name, const std::string& path, const std::vector<std::string>& words) {
        ASSERT_TRUE(bus.waitForName(name));
        std::vector<std::string> all = {"call", "--system", "-d", name, "-o", path, "-m"};
        all.insert(all.end(), words.begin(), words.end());
        const std::string answer = bus.gdbus(all);
        EXPECT_NE(answer.find("()"), std::string::npos) << answer;
    }
    void setProperties(const std::string& name, const std::string& path, const std::string& properties) {
        call(name, path, {"org.freedesktop.DBus.Mock.AddProperties", name, properties});
    }

    const PowerState ofKernel_{true, 55, false};
    ScratchFolder supplies_;
    BusLink link_{bus.address(), std::chrono::milliseconds(10)};
    DesktopPower power_{link_, supplies_.path()};
};

TEST_F(DesktopPowerTest, FollowsTheRealUPower) {
    const std::string daemon = "/usr/libexec/upowerd";
    if (!installed("umockdev-run") || !std::filesystem::exists(daemon))
        GTEST_SKIP() << "umockdev and upower are not installed";
    const std::string mains = "P: /devices/platform/AC\nE: SUBSYSTEM=power_supply\n"
                              "E: POWER_SUPPLY_NAME=AC\nA: type=Mains\\n\nA: online=";
    const std::string battery = "P: /devices/platform/BAT0\nE: SUBSYSTEM=power_supply\n"
                                "E: POWER_SUPPLY_NAME=BAT0\nA: type=Battery\\n\nA: present=1\\n\n"
                                "A: scope=System\\n\nA: capacity=17\\n\nA: status=";
    struct Case {
        const char* what;
        std::string devices;
        PowerState expected;
    };
    const Case cases[] = {
        {"on battery", battery + "Discharging\\n\n\n" + mains + "0\\n\n", {false, 17, false}},
        {"plugged in", battery + "Charging\\n\n\n" + mains + "1\\n\n", {true, 17, false}},
        {"a desktop", mains + "1\\n\n", {true, std::nullopt, false}},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        std::ofstream(folder.path("devices")) << c.devices;
        const PeerProcess upower({"umockdev-run", "-d", folder.path("devices"), "--", daemon},
                                 bus.variables());
        EXPECT_TRUE(becomes(c.expected)) << c.what << upower.output();
    }
    EXPECT_TRUE(becomes(ofKernel_)) << "it has ended";
}

TEST_F(DesktopPowerTest, FollowsTheRealPowerProfiles) {
    const std::string daemon = "/usr/libexec/power-profiles-daemon";
    SKIP_WITHOUT_MOCKS();
    if (!installed("umockdev-run") || !std::filesystem::exists(daemon))
        GTEST_SKIP() << "umockdev and power-profiles-daemon are not both installed";
    const std::string name = "net.hadess.PowerProfiles";
    const std::string path = "/net/hadess/PowerProfiles";
    const PeerProcess polkit(mock("polkitd", "{}", "--system"), bus.variables());
    call("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
         {"org.freedesktop.DBus.Mock.AllowUnknown", "true"});
    const PeerProcess profiles({"umockdev-run", "--", daemon}, bus.variables()); // spares this machine's own
    ASSERT_TRUE(bus.waitForName(name));
    for (const auto& [profile, saves] : {std::pair("power-saver", true), {"balanced", false}}) {
        call(name, path,
             {"org.freedesktop.DBus.Properties.Set", name, "ActiveProfile",
              "<'" + std::string(profile) + "'>"});
        EXPECT_TRUE(becomes({true, 55, saves})) << profile << profiles.output();
    }
}

TEST_F(DesktopPowerTest, TakesASilentServiceForOneThatIsNotThere) {
    SKIP_WITHOUT_MOCKS();
    const std::string upower = "org.freedesktop.UPower";
    const std::string upowerPath = "/org/freedesktop/UPower";
    const std::string name = "org.freedesktop.UPower.PowerProfiles";
    const std::string path = "/org/freedesktop/UPower/PowerProfiles";
    const PowerState saving{true, 55, true};
    {
        const PeerProcess battery(mock("upower", R"({"OnBattery": true})", "--system"), bus.variables());
        call(upower, upowerPath,
             {"org.freedesktop.DBus.Mock.SetupDisplayDevice", "2", "2", "42.0", "1.0", "2.0", "1.0", "0", "0",
              "true", "icon", "2"});
        EXPECT_TRUE(becomes({false, 42, false})) << battery.output();
        const PeerProcess profiles = service(name, path);
        setProperties(name, path, "{'ActiveProfile': <'power-saver'>}");
        EXPECT_TRUE(becomes({false, 42, true})) << profiles.output();
        battery.freeze();
        EXPECT_TRUE(becomes(saving));
        profiles.freeze();
        EXPECT_EQ(power_.state(), ofKernel_);
        profiles.goOn();
        EXPECT_TRUE(becomes(saving)) << "it answers again";
        call(name, path, {"org.freedesktop.DBus.Mock.UpdateProperties", name, "{'ActiveProfile': <true>}"});
        EXPECT_EQ(power_.state(), ofKernel_) << "another type";
    }
    const PeerProcess restarted = service(name, path);
    setProperties(name, path, "{'ActiveProfile': <'power-saver'>}");
    EXPECT_TRUE(becomes(saving)) << "restarted";
    bus.stop();
    EXPECT_TRUE(becomes(ofKernel_)) << "no bus";
    bus.restart();
    EXPECT_TRUE(becomes(ofKernel_)) << "a new bus, without the service";
    const PeerProcess again = service(name, path);
    setProperties(name, path, "{'ActiveProfile': <'power-saver'>}");
    EXPECT_TRUE(becomes(saving)) << "the service on the new bus";
}

TEST_F(DesktopPowerTest, AFrozenBusHoldsNobody) {
    SKIP_WITHOUT_MOCKS();
    const std::string name = "net.hadess.PowerProfiles";
    const std::string path = "/net/hadess/PowerProfiles";
    const PeerProcess profiles = service(name, path);
    setProperties(name, path, "{'ActiveProfile': <'power-saver'>}");
    const PowerState saving{true, 55, true};
    ASSERT_TRUE(becomes(saving));
    const auto start = std::chrono::steady_clock::now();
    bus.freeze();
    EXPECT_EQ(power_.state(), ofKernel_) << "frozen while connected";
    BusLink late(bus.address(), std::chrono::milliseconds(10));
    EXPECT_EQ(DesktopPower(late, supplies_.path()).state(), ofKernel_) << "frozen before";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << "Qt's own limit is 25";
    bus.goOn();
    DesktopPower sinceThen(late, supplies_.path());
    EXPECT_TRUE(becomes(sinceThen, saving));
    EXPECT_TRUE(becomes(saving));
}

} // namespace

} // namespace norvane
