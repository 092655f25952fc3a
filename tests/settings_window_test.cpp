// The settings in the running program: what each control shows, stores and plans.
#include <algorithm>
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

    void closeAndOpenOn(const std::string& tab) const {
        driver->type("ctrl+w");
        ASSERT_TRUE(driver->waitUntilGone("page tab list", "Settings")) << "Ctrl+W closes the window";
        openOn(tab);
    }

    [[nodiscard]] std::vector<Element> all(const std::string& role, const std::string& name) const {
        std::vector<Element> found = driver->elements();
        std::erase_if(found, [&](const Element& e) { return e.role != role || e.name != name; });
        return found;
    }

    /// "role:name" presses a control as an assistive program does, "click:role:name" with the pointer,
    /// "wheel:role:name" turns the wheel over it, "key:name" types, and "scroll" goes to the tab's end.
    void perform(const std::string& step) const {
        const std::size_t colon = step.find(':');
        const std::string first = step.substr(0, colon), rest = step.substr(colon + 1);
        if (first == "scroll")
            return driver->scrollDown(driver->find("frame", "Settings – Norvane")->place.center());
        if (first == "key")
            return driver->type(rest);
        if (first == "click" || first == "wheel") {
            const std::size_t next = rest.find(':');
            const auto element = driver->waitFor(rest.substr(0, next), rest.substr(next + 1), 5);
            ASSERT_TRUE(element) << step << "\n" << describe(driver->elements());
            return first == "click" ? driver->click(element->place.center())
                                    : driver->scrollDown(element->place.center());
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

TEST_F(SettingsWindow, TimePickersShowWhatIsStored) {
    const std::string hours = "spin box:Back up daily at, hours", first = "click:" + hours;
    const auto daily = [](const std::vector<int>& times) {
        std::string list;
        for (const int time : times)
            list += (list.empty() ? "" : ",") + std::string(R"({"hour":)") + std::to_string(time / 100) +
                    R"(,"minute":)" + std::to_string(time % 100) + "}";
        return R"("rules":[{"dailyTimes":{"_0":[)" + list + "]}}]";
    };
    openOn("schedule");
    for (const char* step : {"radio button:Daily Times", "push button:Add Time"})
        perform(step);
    ASSERT_TRUE(eventually([&] {
        return stored("schedule.v1").find(daily({900, 1200})) != std::string::npos;
    }));
    struct Case {
        const char* what;
        Lines steps;
        std::vector<int> times; ///< That are stored then, e.g. 930.
    };
    const std::string minutes = "click:spin box:Back up daily at, minutes";
    for (const Case& c :
         {Case{"typed, in the other half, stepped",
               {first, "key:0", "key:8", "push button:AM", "key:Up"},
               {1200, 2100}},
          {"in the order of the day when it is shown again", {first, "key:Up"}, {1300, 2100}},
          {"emptied", {first, "key:BackSpace", "key:Tab", "key:Up"}, {1301, 2100}},
          {"what no clock has", {minutes, "key:7", "key:7", "key:Up"}, {1302, 2100}},
          {"under the wheel", {first, "wheel:" + hours, "key:Right", "key:Up"}, {1303, 2100}},
          {"half typed, and another one is clicked", {minutes, "key:5", first, "key:Up"}, {1405, 2100}},
          {"half typed, and stepped", {first, "key:3", "key:Up"}, {1605, 2100}},
          {"its row is removed while it is typed", {first, "key:3", "push button:Remove"}, {2100}}}) {
        SCOPED_TRACE(c.what);
        ASSERT_NO_FATAL_FAILURE(closeAndOpenOn("schedule"));
        for (const std::string& step : c.steps)
            perform(step);
        EXPECT_TRUE(eventually([&] {
            return stored("schedule.v1").find(daily(c.times)) != std::string::npos;
        })) << stored("schedule.v1");
        std::vector<int> shown;
        for (const Element& element : all("spin box", "Back up daily at, hours"))
            shown.push_back(static_cast<int>(element.value.value_or(-1)));
        std::vector<int> expected;
        for (const int time : c.times)
            expected.push_back(time / 100);
        std::sort(shown.begin(), shown.end());
        EXPECT_EQ(shown, expected);
    }
}

TEST_F(SettingsWindow, WorksByKeyboardAlone) {
    openOn("schedule");
    perform("radio button:Weekly");
    driver->type("ctrl+Tab");
    EXPECT_TRUE(driver->ringIsOn("Blackouts"));
    driver->type("Left");
    EXPECT_TRUE(driver->ringIsOn("Schedule"));
    driver->type("ctrl+shift+Tab");
    EXPECT_TRUE(driver->ringIsOn("General"));
    driver->type("ctrl+Tab");
    ASSERT_TRUE(driver->ringIsOn("Schedule"));
    EXPECT_EQ(driver->tabStops(), (Lines{"Weekly", "Sunday", "Back up at, hours", "Back up at, minutes", "PM",
                                         "Remove", "Add Time", "Schedule"}));

    ASSERT_TRUE(driver->tabTo("Sunday"));
    driver->type("Right");
    EXPECT_TRUE(driver->ringIsOn("Monday"));
    driver->type("space");
    EXPECT_TRUE(eventually([&] { return !driver->find("check box", "Monday")->checked; }));
    EXPECT_TRUE(driver->focusIsOn("Monday"));

    ASSERT_TRUE(driver->tabTo("Add Time"));
    driver->type("Return");
    ASSERT_TRUE(eventually([&] { return all("push button", "Remove").size() == 2; }));
    ASSERT_TRUE(driver->tabTo("Remove"));
    driver->type("Return");
    EXPECT_TRUE(eventually([&] { return all("push button", "Remove").size() == 1; }));
    EXPECT_TRUE(driver->ringIsOn("Remove")) << "the one that is left";
    driver->type("Return");
    EXPECT_TRUE(driver->ringIsOn("Add Time"));

    for (const char* tab : {"conditions", "general"}) {
        openOn(tab);
        const std::string heading = tab == std::string("general") ? "Language" : "Meetings & recording";
        const auto height = [&] {
            const auto element = driver->find("heading", heading);
            return element ? element->place.y() : 0;
        };
        ASSERT_TRUE(driver->waitFor("heading", heading, 5));
        const int unscrolled = height();
        for (const auto& [away, back] : {std::pair{"Down", "Up"}, {"Next", "Prior"}, {"End", "Home"}}) {
            driver->type(away);
            EXPECT_TRUE(eventually([&] { return height() != unscrolled; }, 3)) << tab << away;
            driver->type(back);
            EXPECT_TRUE(eventually([&] { return height() == unscrolled; }, 3)) << tab << back;
        }
    }
    const std::string grace = "Wait after launch before catching up";
    ASSERT_TRUE(driver->tabTo(grace));
    for (const char* key : {"End", "Home", "Down"})
        driver->type(key);
    ASSERT_TRUE(driver->waitFor("list item", "30 minutes", 5));
    driver->type("Down");
    driver->type("Escape");
    ASSERT_TRUE(driver->waitUntilGone("list item", "30 minutes", 5));
    EXPECT_EQ(driver->find("combo box", grace).value_or(Element{}).description, "5 minutes")
        << "only what was chosen counts";
}

TEST_F(SettingsWindow, ScrollsToABlackoutThatIsAdded) {
    openOn("blackouts");
    const std::string add = "Add Blackout Window";
    for (int i = 0; i < 4; ++i)
        perform("push button:" + add);
    constexpr int statusBar = 28;
    const int lowest = driver->find("frame", "Settings – Norvane")->place.bottom() - statusBar;
    EXPECT_TRUE(eventually([&] {
        const auto button = driver->find("push button", add);
        return button && button->place.bottom() < lowest;
    })) << describe(driver->elements());
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
    openOn("about");
    openOn("general");
    EXPECT_TRUE(eventually([&] {
        const std::string now = describe(driver->elements());
        return now.find(toggle) != std::string::npos && now.find("autostart") == std::string::npos;
    })) << "what went wrong is past";
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
