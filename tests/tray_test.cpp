// The running program in a real tray.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/program_fixture.h"
#include "tests/ui_driver.h"

namespace norvane {

namespace {

constexpr auto settingsDaemon = "/usr/lib/" NORVANE_LIBRARY_ARCHITECTURE "/xfce4/xfconf/xfconfd";

class Tray : public testing::Test {
protected:
    void SetUp() override {
        for (const char* program : {"xfce4-panel", "xfconf-query"})
            if (!installed(program) || !std::filesystem::exists(settingsDaemon))
                GTEST_SKIP() << program << " is not installed";
        if (const auto missing = UiDriver::missingProgram())
            GTEST_SKIP() << *missing << " is not installed";
        driver.emplace(user.bus());
        for (const std::string& variable : driver->variables())
            variables.push_back(variable);
        variables.push_back("HOME=" + user.path("home"));
        variables.push_back("XDG_CONFIG_HOME=" + user.path("config"));
    }

    /// A panel at the screen's bottom with nothing but a tray, which begins at its left end.
    [[nodiscard]] std::unique_ptr<PeerProcess> startHost() {
        return std::make_unique<PeerProcess>(
            Words{"xfce4-panel", "--disable-wm-check", "--sm-client-disable"}, variables);
    }
    void configureHost() {
        const auto set = [this](const std::string& property, const Words& values) {
            Words words = {"xfconf-query", "-c", "xfce4-panel", "-p", property, "-n"};
            words.insert(words.end(), values.begin(), values.end());
            PeerProcess(words, variables).waitForExit();
        };
        daemon.emplace(Words{settingsDaemon}, variables);
        ASSERT_TRUE(user.bus().waitForName("org.xfce.Xfconf"));
        set("/configver", {"-t", "int", "-s", "2"});
        set("/panels", {"-a", "-t", "int", "-s", "1"});
        set("/panels/panel-1/position", {"-t", "string", "-s", "p=8;x=512;y=685"});
        set("/panels/panel-1/length", {"-t", "uint", "-s", "100"});
        set("/panels/panel-1/size", {"-t", "uint", "-s", "28"});
        set("/panels/panel-1/plugin-ids", {"-a", "-t", "int", "-s", "1"});
        set("/plugins/plugin-1", {"-t", "string", "-s", "systray"});
    }

    /// Whether the tray has the program's item.
    [[nodiscard]] bool itemArrives() const {
        return eventually([this] {
            return user.bus()
                       .gdbus({"call", "--session", "--dest", "org.kde.StatusNotifierWatcher",
                               "--object-path", "/StatusNotifierWatcher", "--method",
                               "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierWatcher",
                               "RegisteredStatusNotifierItems"})
                       .find("StatusNotifierItem") != std::string::npos;
        });
    }
    [[nodiscard]] std::string itemProperty(const std::string& name) const {
        const std::string answer = user.bus().gdbus(
            {"call", "--session", "--dest", "org.kde.StatusNotifierItem-" + std::to_string(itself) + "-1",
             "--object-path", "/StatusNotifierItem", "--method", "org.freedesktop.DBus.Properties.Get",
             "org.kde.StatusNotifierItem", name});
        const std::size_t begin = answer.find('\'') + 1; // "(<'value'>,)"
        return answer.substr(begin, answer.rfind('\'') - begin);
    }
    void clickItem() const { driver->click({25, 685}); }
    /// Whether the panel comes, and is ready to be left.
    [[nodiscard]] bool opens() const {
        return eventually([this] {
            const auto window = driver->find("frame", "Norvane");
            return window && window->active && driver->find("push button", "Quit Norvane");
        });
    }
    [[nodiscard]] bool closes() const { return driver->waitUntilGone("frame", "Norvane", 5); }

    using Words = std::vector<std::string>;
    ProgramFixture user;
    std::optional<UiDriver> driver;
    Words variables;
    std::optional<PeerProcess> daemon;
    pid_t itself = 0;
};

TEST_F(Tray, ShowsTheItemThatOpensThePanel) {
    configureHost();
    itself = user.start(NORVANE_BIN_DIR "/norvane", driver->variables());
    ASSERT_TRUE(user.waitForLog("Next backup scheduled for", 15));
    auto host = startHost(); // after the program
    ASSERT_TRUE(itemArrives()) << host->output();
    std::this_thread::sleep_for(std::chrono::seconds(2)); // until it is drawn

    const std::string icon =
        itemProperty("IconThemePath") + "/hicolor/symbolic/apps/" + itemProperty("IconName");
    EXPECT_TRUE(std::filesystem::exists(icon + ".svg")) << icon;

    clickItem();
    ASSERT_TRUE(opens());
    const QRect panel = driver->find("frame", "Norvane")->place;
    EXPECT_TRUE(QRect(QPoint(), UiDriver::screenSize).contains(panel)) << panel.x() << "," << panel.y();
    EXPECT_LT(685 - panel.bottom(), 40) << "it is not at the item";
    clickItem();
    EXPECT_TRUE(closes()) << "the second click closes it";

    clickItem();
    ASSERT_TRUE(opens());
    EXPECT_TRUE(driver->press("push button", "Quit Norvane"));
    ASSERT_TRUE(driver->waitFor("heading", "Quit Norvane?", 5));
    clickItem();
    ASSERT_TRUE(closes());
    clickItem();
    EXPECT_TRUE(opens()) << "the question is over: " << describe(driver->elements());
    driver->click({900, 100});
    EXPECT_TRUE(closes()) << "a click elsewhere closes it";

    host.reset();
    host = startHost();
    ASSERT_TRUE(itemArrives()) << "a tray that starts again has the item: " << host->output();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    clickItem();
    EXPECT_TRUE(opens());
}

} // namespace

} // namespace norvane
