// The Health window: what it reads like, and what its controls do.
#include "tests/program_fixture.h"
#include "tests/window_test.h"

namespace norvane {

namespace {

class HealthWindow : public WindowTest {
protected:
    static bool waitForFigures() {
        return user().waitFor("push button", "Refresh") &&
               user().waitUntilGone("label", "Reading Time Machine records…");
    }
};

TEST_F(HealthWindow, ReadsInOrder) {
    struct Case {
        std::string state;
        Lines lines;
    };
    for (const Case& c :
         {Case{"health-stale",
               {"frame \"Backup Health\"", "heading \"Backups need attention\"",
                "label \"Last verified backup 1 day, 5 hr ago\"",
                "label \"Backup disk: 73 GB free, 93% full\"",
                "label \"Startup disk: 500 GB free, 10 GB minimum to stage backups\"",
                "label \"Backups stored: 7, oldest Mar 3, 2026\"",
                "label \"Typical duration: 5 min, median of recent backups\"",
                "heading \"RECENT BACKUPS — DURATION\"", "label \"Minutes\"",
                "chart \"RECENT BACKUPS — DURATION\"", "graphic \"Mar 3, 2026, 10:02 PM, 8 min\"",
                "graphic \"Mar 3, 2026, 11:05 PM, 5 min\"", "graphic \"Mar 3, 2026, 11:44 PM, 26 min\"",
                "graphic \"Mar 4, 2026, 1:06 AM, 4 min\"", "graphic \"Mar 4, 2026, 2:05 AM, 5 min\"",
                "graphic \"Mar 4, 2026, 2:58 AM, 12 min\"", "graphic \"Mar 4, 2026, 4:07 AM, 3 min\"",
                "graphic \"Mar 4, 2026, 5:03 AM, did not complete\"",
                "graphic \"Mar 4, 2026, 6:06 AM, did not complete\""}},
          {"health-empty",
           {"frame \"Backup Health\"", "heading \"Backups are healthy\"",
            "label \"No verified backups recorded\"", "label \"Backup disk: —\"",
            "label \"Startup disk: —, 10 GB minimum to stage backups\"", "label \"Backups stored: 0\"",
            "label \"Typical duration: —, median of recent backups\"",
            "heading \"RECENT BACKUPS — DURATION\"", "label \"No attempts recorded yet\"",
            "label \"Data from Time Machine's own records — no special permissions needed.\"",
            "push button \"Activity…\"", "push button \"Local Snapshots…\"", "push button \"Refresh\""}}}) {
        const PeerProcess program = show(c.state);
        ASSERT_TRUE(waitForFigures()) << program.output() << describe(user().elements());
        std::vector<Element> elements = user().elements();
        elements.resize(std::min(elements.size(), c.lines.size())); // the rest is for scrolling
        EXPECT_EQ(describe(elements), joined(c.lines));
    }
}

TEST_F(HealthWindow, TabReachesEveryControlInReadingOrder) {
    const PeerProcess program = show("health-ok");
    ASSERT_TRUE(waitForFigures()) << program.output();
    EXPECT_EQ(joined(tabStops()), joined({"RECENT BACKUPS — DURATION", "LATEST ATTEMPTS",
                                          "Norvane has verified 63 backups for you ☕", "Activity…",
                                          "Local Snapshots…", "Refresh"}));
}

TEST_F(HealthWindow, TheKeyboardReadsTheChartAndTheList) {
    const PeerProcess program = show("health-stale");
    ASSERT_TRUE(waitForFigures()) << program.output();
    user().type("Tab");
    ASSERT_TRUE(focusIsOn("RECENT BACKUPS — DURATION"));
    EXPECT_TRUE(user().waitFor("tool tip", "Mar 4, 2026, 6:06 AM, did not complete"))
        << describe(user().elements());
    for (int i = 0; i < 10; ++i)
        user().type("Left");
    EXPECT_TRUE(user().waitFor("tool tip", "Mar 3, 2026, 10:02 PM, 8 min"));
    user().type("Tab");
    ASSERT_TRUE(focusIsOn("LATEST ATTEMPTS"));
    EXPECT_TRUE(user().waitFor("list item", "Mar 4, 2026, 1:06 AM, 4 min")) << "it has scrolled to the end";
    EXPECT_TRUE(user().waitUntilGone("tool tip", "Mar 3, 2026, 10:02 PM, 8 min"));
    user().type("Escape");
    EXPECT_TRUE(user().waitUntilGone("frame", "Backup Health"));
}

TEST_F(HealthWindow, ShowsTheLatestAttemptsWithoutScrolling) {
    const PeerProcess program = show("health-ok");
    ASSERT_TRUE(waitForFigures()) << program.output();
    const auto second = user().find("list item", "Mar 4, 2026, 2:03 PM, 6 min");
    const auto footer = user().find("push button", "Norvane has verified 63 backups for you ☕");
    ASSERT_TRUE(second && footer) << describe(user().elements());
    constexpr int padding = 12;
    EXPECT_LE(second->place.bottom(), footer->place.top() - padding);
}

TEST_F(HealthWindow, EveryButtonHasItsEffect) {
    const PeerProcess program = show("health-ok");
    ASSERT_TRUE(waitForFigures()) << program.output();
    ASSERT_TRUE(user().find("label", "Backup disk: 600 GB free, 40% full")) << describe(user().elements());
    for (const auto& [button, effect] : {std::pair{"Activity…", "activity\n"},
                                         {"Local Snapshots…", "snapshots\n"},
                                         {"Norvane has verified 63 backups for you ☕",
                                          "opened https://norvane.example/coffee?src=health\n"}}) {
        EXPECT_TRUE(user().press("push button", button)) << button;
        EXPECT_TRUE(program.waitForOutput(effect)) << button << ": " << program.output();
    }
    EXPECT_TRUE(user().press("push button", "Refresh"));
    EXPECT_TRUE(user().waitFor("label", "Backup disk: 3 GB free, 99% full")) << describe(user().elements());
}

TEST(Windows, OpenFromTheProgramAndFromEachOther) {
    if (const auto missing = UiDriver::missingProgram())
        GTEST_SKIP() << *missing << " is not installed";
    ProgramFixture user;
    const UiDriver driver(user.bus());
    const auto opens = [&driver](const std::string& title) {
        return eventually([&] {
            const auto window = driver.find("frame", title);
            return window && window->active;
        });
    };
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", driver.variables());
    ASSERT_TRUE(user.waitForLog("Next backup scheduled for", 30));
    EXPECT_TRUE(driver.elements().empty()) << describe(driver.elements());

    user.start(NORVANE_BIN_DIR "/norvane", driver.variables());
    ASSERT_TRUE(opens("Backup Health")) << user.log();
    EXPECT_TRUE(user.waitForLog("Reopened from Finder/Dock — opening Health window", 5));
    EXPECT_TRUE(driver.waitFor("label", "No verified backups recorded")) << describe(driver.elements());
    const auto closes = [&driver] {
        driver.type("alt+F4"); // which the window manager may miss
        return driver.waitUntilGone("frame", "Backup Health", 5);
    };
    EXPECT_TRUE(eventually(closes, 30)) << describe(driver.elements());

    user.action("health");
    ASSERT_TRUE(opens("Backup Health")) << "a closed window comes back";
    EXPECT_TRUE(driver.press("push button", "Local Snapshots…"));
    ASSERT_TRUE(opens("Local Snapshots"));
    EXPECT_TRUE(driver.waitFor("label", "No local snapshots on your startup disk."))
        << describe(driver.elements());
    EXPECT_TRUE(driver.press("push button", "Activity…"));
    ASSERT_TRUE(opens("Settings – Norvane"));
    EXPECT_TRUE(driver.waitFor("push button", "Open Log File")) << describe(driver.elements());
    user.action("snapshots");
    EXPECT_TRUE(opens("Local Snapshots")) << "in front of the others";

    // A real backup, told of without being asked.
    EXPECT_FALSE(driver.find("list", "LATEST ATTEMPTS"));
    user.shell("echo text > '" + user.source() + "/file'");
    user.action("back-up-now");
    ASSERT_TRUE(user.waitForLog("Backup finished — snapshot verified", 60)) << user.log();
    EXPECT_TRUE(driver.waitFor("list", "LATEST ATTEMPTS")) << describe(driver.elements());
    EXPECT_TRUE(driver.find("heading", "Backups are healthy"));
    user.action("quit");
    EXPECT_EQ(user.waitForExit(program, 30), 0);
}

} // namespace

} // namespace norvane
