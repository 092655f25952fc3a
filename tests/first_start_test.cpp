// The road of a new user, from the first start to the end of the setup guide, with the real tools.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/program_fixture.h"
#include "tests/ui_driver.h"

namespace norvane {
namespace {

class FirstStart : public testing::Test {
protected:
    void SetUp() override {
        if (const auto missing = UiDriver::missingProgram())
            GTEST_SKIP() << *missing << " is not installed";
        driver.emplace(user.bus());
        variables = driver->variables();
        // No handler of the scheme is registered, so that the pane beside the program opens.
        variables.push_back("XDG_DATA_DIRS=" + user.path("data"));
        variables.push_back("XDG_DATA_HOME=" + user.path("data"));
        (void)user.defaults("delete org.norvane.Norvane onboardingDone.v1");
    }

    void press(const std::string& name, const std::string& role = "push button") {
        ASSERT_TRUE(driver->waitFor(role, name)) << name << " is not among\n" << describe(driver->elements());
        EXPECT_TRUE(driver->press(role, name)) << name;
    }
    [[nodiscard]] bool shows(const std::string& role, const std::string& name) const {
        return driver->waitFor(role, name).has_value();
    }

    ProgramFixture user;
    std::optional<UiDriver> driver;
    std::vector<std::string> variables;
};

TEST_F(FirstStart, LeadsToBackupsUnderTheUsersControlWithoutAShell) {
    (void)user.tmutil("removedestination");
    (void)user.defaults("write /Library/Preferences/com.apple.TimeMachine.plist AutoBackup -bool true");
    std::filesystem::create_directories(user.path("home/Backups"));
    user.start(NORVANE_BIN_DIR "/norvane", variables);
    ASSERT_TRUE(shows("heading", "Welcome to Norvane")) << describe(driver->elements());
    EXPECT_FALSE(driver->find("push button", "Back"));
    driver->type("Return");
    ASSERT_TRUE(shows("heading", "Turn off Apple's automatic schedule"));
    EXPECT_TRUE(
        shows("label", "Apple's automatic backups are still ON — set the frequency to “Manually” below."));
    EXPECT_TRUE(
        shows("label", "No backup disk is configured yet — choose one in Time Machine settings first."));

    press("Open Time Machine Settings");
    press("Choose Backup Disk…");
    press("Choose Folder…");
    press("Backups", "list item");
    press("Choose This Folder");
    ASSERT_TRUE(shows("push button", "Backups")) << describe(driver->elements());
    EXPECT_TRUE(shows("label", "This is on the same disk as “" + user.source() +
                                   "”. If that disk fails, the backups are lost with it."));
    press("Use Disk");
    ASSERT_TRUE(shows("push button", "Change Backup Disk…"));
    EXPECT_NE(user.tmutil("destinationinfo").find("Mount Point   : " + user.path("home/Backups")),
              std::string::npos);

    EXPECT_TRUE(shows("label", "Backing up to “Backups”."));

    press("Options…");
    ASSERT_TRUE(shows("push button", "Done"));
    driver->type("Return"); // the keyboard is on the frequency
    ASSERT_TRUE(shows("list item", "Manually")) << describe(driver->elements());
    driver->type("Up");
    driver->type("Return");
    ASSERT_TRUE(eventually([&] {
        return user.defaults("read /Library/Preferences/com.apple.TimeMachine.plist AutoBackup") == "0";
    })) << describe(driver->elements());
    EXPECT_TRUE(shows("label", "Automatic backups are OFF — Norvane is in control."))
        << describe(driver->elements());
    press("Done");

    press("Continue");
    ASSERT_TRUE(shows("heading", "Stay covered"));
    press("Launch Norvane at login", "check box");
    press("Enable failure alerts");
    EXPECT_TRUE(shows("label", "Failure alerts enabled"));
    EXPECT_TRUE(eventually(
        [&] { return std::filesystem::exists(user.path("config/autostart/org.norvane.Norvane.desktop")); }));
    press("Continue");
    ASSERT_TRUE(shows("heading", "You're set"));
    EXPECT_TRUE(shows("label", "Norvane controls your backup timing."));
    press("Finish");
    EXPECT_TRUE(driver->waitUntilGone("heading", "You're set"));
    EXPECT_EQ(user.defaults("read org.norvane.Norvane onboardingDone.v1"), "1");
}

TEST_F(FirstStart, TheGuideComesAgainUntilItIsFinished) {
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", variables);
    ASSERT_TRUE(shows("push button", "Continue"));
    driver->type("Return");
    ASSERT_TRUE(shows("push button", "Back"));
    driver->type("alt+F4");
    ASSERT_TRUE(driver->waitUntilGone("push button", "Back"));
    user.action("onboarding");
    ASSERT_TRUE(shows("push button", "Back")) << "opened again, it shows its last state";
    user.action("quit");
    ASSERT_EQ(user.waitForExit(program, 15), 0);
    user.start(NORVANE_BIN_DIR "/norvane", variables);
    EXPECT_TRUE(shows("heading", "Welcome to Norvane"));
}

TEST_F(FirstStart, ADiskImageLeavesOneWayOn) {
    const std::string folder = user.path("AppTranslocation/bin");
    std::filesystem::create_directories(folder);
    std::filesystem::copy(NORVANE_BIN_DIR "/norvane", folder + "/norvane");
    const pid_t program = user.start(folder + "/norvane", variables);
    ASSERT_TRUE(shows("heading", "Norvane is running from the disk image"));
    EXPECT_TRUE(shows("label", "Drag Norvane to your Applications folder, then open it from there."));
    EXPECT_FALSE(driver->find("heading", "Welcome to Norvane"));
    driver->type("Return");
    EXPECT_EQ(user.waitForExit(program, 15), 0);
    EXPECT_EQ(user.log(), "") << "nothing else has started";
}

} // namespace
} // namespace norvane
