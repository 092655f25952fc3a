// The settings in the running program: what each control shows, stores and plans.
#include <gtest/gtest.h>

#include "tests/program_fixture.h"
#include "tests/ui_driver.h"

namespace norvane {
namespace {

using Lines = std::vector<std::string>;

class SettingsWindow : public testing::Test {
protected:
    void SetUp() override {
        if (const auto missing = UiDriver::missingProgram())
            GTEST_SKIP() << *missing << " is not installed";
        (void)user.defaults("write org.norvane.Norvane onboardingDone.v1 -bool YES");
        const std::string applications = user.path("home/.local/share/applications");
        (void)user.shell("mkdir -p " + applications +
                         "; printf '[Desktop Entry]\nType=Application\nName=Zebra\nExec=true\n' > " +
                         applications + "/org.example.Zebra.desktop");
        driver.emplace(user.bus());
        program = user.start(NORVANE_BIN_DIR "/norvane", driver->variables());
        ASSERT_TRUE(user.waitForLog("Next backup scheduled for", 15));
    }

    void openOn(const std::string& tab) const {
        user.action("settings-" + tab);
        ASSERT_TRUE(driver->waitFor("page tab list", "Settings")) << user.log();
    }

    /// A stored value as text; JSON that is stored as data as what it is.
    [[nodiscard]] std::string stored(const std::string& key) const {
        const std::string text = user.defaults("read org.norvane.Norvane " + key + " 2>&1");
        if (!text.starts_with('<'))
            return text;
        std::string bytes, digits;
        for (const char character : text)
            if (std::isxdigit(static_cast<unsigned char>(character)) != 0)
                digits += character;
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
            bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
        return bytes;
    }

    /// "role:name" presses a control as an assistive program does, "click:role:name" with the pointer,
    /// "key:name" types, and "scroll" goes to the tab's end.
    void perform(const std::string& step) const {
        const std::size_t colon = step.find(':');
        const std::string first = step.substr(0, colon), rest = step.substr(colon + 1);
        if (first == "scroll")
            return driver->scrollDown(driver->find("frame", "Settings – Norvane")->place.center());
        if (first == "key")
            return driver->type(rest);
        if (first == "click") {
            const std::size_t next = rest.find(':');
            const auto element = driver->waitFor(rest.substr(0, next), rest.substr(next + 1), 5);
            ASSERT_TRUE(element) << step << "\n" << describe(driver->elements());
            return driver->click(element->place.center());
        }
        ASSERT_TRUE(driver->waitFor(first, rest, 5)) << step << "\n" << describe(driver->elements());
        EXPECT_TRUE(driver->press(first, rest)) << step;
    }

    ProgramFixture user;
    std::optional<UiDriver> driver;
    pid_t program = 0;
};

TEST_F(SettingsWindow, EveryControlStoresWhatItShows) {
    struct Case {
        std::string tab;
        Lines steps;
        std::string key;
        std::string stored;   ///< Part of the value.
        std::string logged{}; ///< What the program does about it.
    };
    const std::string planned = "Next backup scheduled for ";
    const std::string noon = R"({"hour":12,"minute":0})";
    const Case cases[] = {
        {"schedule", {"click:slider:Back up every", "key:Right"}, "schedule.v1", R"({"hours":13}})", planned},
        {"schedule",
         {"radio button:Daily Times"},
         "schedule.v1",
         R"("rules":[{"dailyTimes":{"_0":[)" + noon + "]}}]",
         "12:00:00 +0000"},
        {"schedule",
         {"push button:Add Time"},
         "schedule.v1",
         R"([{"hour":9,"minute":0},)" + noon + "]"}, // between the two the plan stays, and nothing is logged
        {"schedule",
         {"radio button:Weekly", "check box:Monday", "check box:Wednesday"},
         "schedule.v1",
         R"([{"weekdayTimes":{"_0":[{"weekday":6,"times":[)" + noon + "]}]}}]",
         planned},
        {"schedule",
         {"click:spin box:Back up at, hours", "key:3", "key:Right", "key:4", "key:5", "push button:PM"},
         "schedule.v1",
         R"({"weekday":6,"times":[{"hour":3,"minute":45}]})",
         "03:45:00 +0000"},
        {"blackouts",
         {"push button:Add Blackout Window"},
         "schedule.v1",
         R"("blackouts":[{"days":[1,2,3,4,5,6,7],"start":{"hour":9,"minute":0},"end":{"hour":17,"minute":0}}])"},
        {"blackouts",
         {"check box:Monday", "click:spin box:From, hours", "key:Down", "key:Down", "key:Down", "key:Down",
          "key:Down", "key:Down"},
         "schedule.v1",
         R"({"days":[1,3,4,5,6,7],"start":{"hour":3,"minute":0},"end":{"hour":17,"minute":0}})",
         "17:00:00 +0000"},
        {"blackouts", {"push button:Remove"}, "schedule.v1", R"("blackouts":[])", "03:45:00 +0000"},
        {"conditions",
         {"check box:Defer while camera, microphone, or screen sharing is in use"},
         "conditions.v1",
         R"("deferWhileCameraOrMicInUse":true)"},
        {"conditions",
         {"click:combo box:Defer while the Mac is busy", "key:Down", "key:Down", "key:Return"},
         "conditions.v1",
         R"("maxLoadPerCore":0.6)"},
        {"conditions",
         {"check box:Wait until the backup disk is connected"},
         "conditions.v1",
         R"("requireDestinationPresent":true)"},
        {"conditions",
         {"push button:Add App", "click:text:Search", "key:Z", "key:e", "key:b", "check box:Zebra",
          "push button:Add"},
         "conditions.v1",
         R"("blockedApps":[{"bundleID":"org.example.Zebra","name":"Zebra"}])"},
        {"conditions", {"scroll", "push button:Remove"}, "conditions.v1", R"("blockedApps":[])"},
        {"conditions", {"check box:Only back up on power adapter"}, "conditions.v1", R"("requireAC":true)"},
        {"conditions",
         {"check box:Defer in Low Power Mode"},
         "conditions.v1",
         R"("deferInLowPowerMode":true)"},
        {"conditions",
         {"click:combo box:Don't start below battery level", "key:Down", "key:Down", "key:Return"},
         "conditions.v1",
         R"("minBatteryPercent":30)"},
        {"conditions",
         {"click:slider:Maximum wait", "key:Right"},
         "conditions.v1",
         R"("maxDeferralHours":7,)"},
        {"conditions",
         {"click:combo box:Recheck every", "key:Down", "key:Return"},
         "conditions.v1",
         R"("recheckMinutes":10)"},
        {"general",
         {"click:combo box:Wait after launch before catching up", "key:Down", "key:Return"},
         "launchGraceMinutes.v1",
         "15"},
        {"general", {"check box:Always use Norvane orange"}, "alwaysBrandAccent.v1", "1"},
        {"general",
         {"click:combo box:Language", "key:Down", "key:Down", "key:Return"},
         "AppleLanguages",
         "fr-CA"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.tab + ": " + c.steps.front());
        const std::size_t logged = user.log().size();
        openOn(c.tab);
        for (const std::string& step : c.steps)
            perform(step);
        EXPECT_TRUE(eventually([&] { return stored(c.key).find(c.stored) != std::string::npos; }))
            << stored(c.key);
        EXPECT_TRUE(user.waitForLog(c.logged, 10, logged)) << user.log().substr(logged);
    }
}

TEST_F(SettingsWindow, TogglesTheLoginItemAndTellsWhyNot) {
    const std::string toggle = "Launch Norvane at login", folder = user.path("config/autostart");
    openOn("general");
    perform("check box:" + toggle);
    EXPECT_TRUE(eventually([&] { return user.shell("grep -l Exec= " + folder + "/*") != ""; }));
    EXPECT_TRUE(eventually([&] { return driver->find("check box", toggle)->checked; }));
    (void)user.shell("rm -r " + folder + "; touch " + folder);
    openOn("about"); // the tab reads the state anew
    openOn("general");
    EXPECT_TRUE(eventually([&] {
        const auto now = driver->find("check box", toggle);
        return now && !now->checked;
    }));
    perform("check box:" + toggle);
    EXPECT_TRUE(eventually([&] {
        return describe(driver->elements()).find("autostart") != std::string::npos;
    })) << describe(driver->elements());
    EXPECT_FALSE(driver->find("check box", toggle)->checked) << "it shows what is so, not what was wished";
}

TEST_F(SettingsWindow, RelaunchesInTheChosenLanguage) {
    openOn("general");
    EXPECT_FALSE(driver->find("push button", "Relaunch Now"));
    for (const char* step : {"click:combo box:Language", "key:Down", "key:Down", "key:Down", "key:Return",
                             "push button:Relaunch Now"})
        perform(step);
    const std::string launched = "Launched v";
    const auto first = user.waitForLog(launched, 1);
    ASSERT_TRUE(first);
    EXPECT_TRUE(user.waitForLog(launched, 20, *first)) << user.log();
    EXPECT_EQ(user.waitForExit(program, 10), 0);
    user.action("quit"); // the new one
    EXPECT_TRUE(eventually([&] {
        return user.bus()
                   .gdbus({"call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                           "--method", "org.freedesktop.DBus.NameHasOwner", "org.norvane.Norvane"})
                   .find("false") != std::string::npos;
    }));
}

TEST_F(SettingsWindow, ShowsWhatHappens) {
    openOn("activity");
    ASSERT_TRUE(driver->waitFor("label", "3 events", 10)) << describe(driver->elements());
    const std::string listed = describe(driver->elements());
    const std::size_t newest = listed.find("list item \"Next backup scheduled for");
    EXPECT_LT(newest, listed.find("list item \"First launch: interval timing starts now")) << listed;
    EXPECT_LT(newest, listed.size());
    user.action("skip-next");
    EXPECT_TRUE(driver->waitUntilGone("label", "3 events", 15)) << "it follows the log";
    driver->type("Escape");
    EXPECT_TRUE(driver->waitUntilGone("page tab list", "Settings")) << "Escape closes the window";
}

} // namespace
} // namespace norvane
