// The road of a new user, from the first start to a restored file, with the real tools.
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
        variables.push_back("PATH=" + user.path("bin") + ":" + getenv("PATH"));
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

// The whole road, in stretches.
class FirstStartRoad : public FirstStart {
protected:
    /// In place of systemd's manager of the user's services, which starts nothing here. The timer is a file;
    /// switching it off takes until another file is there, or some seconds.
    void provideServiceManager() const {
        std::filesystem::create_directories(user.path("bin"));
        const std::string program = user.path("bin/systemctl");
        std::ofstream(program) << "#!/bin/sh\ncd '" << user.path("bin") << "'\n"
                               << R"(case $3 in
enable) : >timer ;;
disable) i=0; while [ $i -lt 60 ] && [ ! -e go-on ]; do sleep 0.1; i=$((i+1)); done; rm -f timer ;;
is-active) test -e timer ;;
esac
)";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    [[nodiscard]] bool timerRuns() const { return std::filesystem::exists(user.path("bin/timer")); }
    [[nodiscard]] std::string automaticFlag() const {
        return user.defaults("read /Library/Preferences/com.apple.TimeMachine.plist AutoBackup");
    }

    int titleHeight = 0;

    void openOptions() {
        press("Options…");
        ASSERT_TRUE(shows("push button", "Done"));
    }
    /// The keyboard is on the frequency. `key`: to where the choice stands among the others.
    void chooseFrequency(const std::string& key) {
        driver->type("Return");
        ASSERT_TRUE(shows("list item", "Manually")) << describe(driver->elements());
        driver->type(key);
        driver->type("Return");
    }
    void chooseFolder(const std::string& button, const std::vector<std::string>& steps) {
        press(button);
        for (const std::string& step : steps)
            press(step, "list item");
        press("Choose This Folder");
        ASSERT_TRUE(driver->waitUntilGone("push button", "Choose This Folder"));
    }
    [[nodiscard]] bool closePane() const {
        return eventually(
            [&] {
                const auto window = driver->find("frame", "Time Machine");
                if (window && window->active)
                    driver->type("alt+F4"); // which the window manager may miss
                return !window || driver->waitUntilGone("frame", "Time Machine", 5);
            },
            60);
    }
    [[nodiscard]] int heightOf(const std::string& title) const {
        return driver->find("heading", title)->place.top();
    }
    [[nodiscard]] bool paneRuns() const {
        return user.shell("gdbus call --session --dest org.freedesktop.DBus --object-path / --method "
                          "org.freedesktop.DBus.NameHasOwner org.norvane.TimeMachineSettings")
                   .find("true") != std::string::npos;
    }
    void fillHome() const {
        for (const char* file : {"Documents/letter", "Documents/Private/diary", "Pictures/photo"}) {
            const std::filesystem::path path = user.path("home/") + file;
            std::filesystem::create_directories(path.parent_path());
            std::ofstream(path) << "what is in " << file;
        }
    }

    void reachTheSchedule() {
        (void)user.tmutil("removedestination");
        (void)user.defaults("write /Library/Preferences/com.apple.TimeMachine.plist AutoBackup -bool true");
        std::filesystem::create_directories(user.path("home/Backups"));
        fillHome();
        provideServiceManager();
        user.start(NORVANE_BIN_DIR "/norvane", variables);
        ASSERT_TRUE(shows("heading", "Welcome to Norvane")) << describe(driver->elements());
        EXPECT_FALSE(driver->find("push button", "Back"));
        titleHeight = heightOf("Welcome to Norvane");
        driver->type("Return");
        ASSERT_TRUE(shows("heading", "Turn off Apple's automatic schedule"));
        EXPECT_EQ(heightOf("Turn off Apple's automatic schedule"), titleHeight);
        EXPECT_TRUE(shows("label",
                          "Apple's automatic backups are still ON — set the frequency to “Manually” below."));
        EXPECT_TRUE(
            shows("label", "No backup disk is configured yet — choose one in Time Machine settings first."));
    }
    void chooseTheDisk() {
        press("Open Time Machine Settings");
        press("Choose Backup Disk…");
        chooseFolder("Choose Folder…", {"Backups"});
        ASSERT_TRUE(shows("push button", "Backups")) << describe(driver->elements());
        EXPECT_TRUE(shows("label", "This is on the same disk as “" + user.source() +
                                       "”. If that disk fails, the backups are lost with it."));
        press("Use Disk");
        ASSERT_TRUE(shows("push button", "Change Backup Disk…"));
        EXPECT_NE(user.tmutil("destinationinfo").find("Mount Point   : " + user.path("home/Backups")),
                  std::string::npos);
        EXPECT_TRUE(shows("label", "Backing up to “Backups”."));
    }
    void chooseFolders() {
        openOptions();
        chooseFolder("Add Folder to Leave Out…", {"Pictures"});
        press("Remove");
        ASSERT_TRUE(driver->waitUntilGone("label", user.path("home/Pictures")));
        chooseFolder("Add Folder to Leave Out…", {"Documents", "Private"});
        chooseFolder("Add Folder to Back Up…", {"Pictures"});
        ASSERT_TRUE(shows("label", user.path("home/Pictures"))) << describe(driver->elements());
    }
    void switchToManual() {
        chooseFrequency("End");
        EXPECT_TRUE(eventually([&] { return timerRuns() && automaticFlag() == "1"; }, 60));
        press("Done");
        ASSERT_TRUE(shows("label", "Back up frequency: Automatically every hour"))
            << describe(driver->elements());

        openOptions();
        chooseFrequency("Home");
        ASSERT_TRUE(closePane());
        std::ofstream(user.path("bin/go-on"));
        ASSERT_TRUE(eventually([&] { return !paneRuns(); }, 60));
        EXPECT_EQ(automaticFlag(), "0") << "closed early, it has done what was chosen";
        EXPECT_FALSE(timerRuns());
        EXPECT_TRUE(shows("label", "Automatic backups are OFF — Norvane is in control."))
            << describe(driver->elements());
    }
    void finishTheGuide() {
        press("Continue");
        ASSERT_TRUE(shows("heading", "Stay covered"));
        EXPECT_EQ(heightOf("Stay covered"), titleHeight);
        press("Launch Norvane at login", "check box");
        press("Enable failure alerts");
        EXPECT_TRUE(shows("label", "Failure alerts enabled"));
        EXPECT_TRUE(eventually([&] {
            return std::filesystem::exists(user.path("config/autostart/org.norvane.Norvane.desktop"));
        }));
        press("Continue");
        ASSERT_TRUE(shows("heading", "You're set"));
        EXPECT_EQ(heightOf("You're set"), titleHeight);
        EXPECT_TRUE(shows("label", "Norvane controls your backup timing."));
        press("Finish");
        EXPECT_TRUE(driver->waitUntilGone("heading", "You're set"));
        EXPECT_EQ(user.defaults("read org.norvane.Norvane onboardingDone.v1"), "1");
    }
    void backUpAndRestore() {
        user.action("back-up-now");
        ASSERT_TRUE(user.waitForLog("Backup finished — snapshot verified", 120)) << user.log();
        user.action("health");
        ASSERT_TRUE(shows("heading", "Backups are healthy")) << describe(driver->elements());
        EXPECT_TRUE(shows("list", "LATEST ATTEMPTS")) << describe(driver->elements());
        EXPECT_FALSE(driver->find("label", "No verified backups recorded"));

        const std::string snapshot = user.tmutil("latestbackup");
        EXPECT_TRUE(std::filesystem::exists(snapshot + user.path("home/Pictures/photo")));
        EXPECT_FALSE(std::filesystem::exists(snapshot + user.path("home/Documents/Private")));
        const std::string letter = user.path("home/Documents/letter");
        std::filesystem::remove(letter);
        EXPECT_EQ(user.tmutil("restore '" + snapshot + letter + "' '" + user.source() + "' 2>&1"), "");
        EXPECT_EQ(user.shell("cat '" + letter + "'"), "what is in Documents/letter");
    }
};

TEST_F(FirstStartRoad, LeadsToBackupsUnderTheUsersControlWithoutAShell) {
    ASSERT_NO_FATAL_FAILURE(reachTheSchedule());
    ASSERT_NO_FATAL_FAILURE(chooseTheDisk());
    ASSERT_NO_FATAL_FAILURE(chooseFolders());
    ASSERT_NO_FATAL_FAILURE(switchToManual());
    ASSERT_NO_FATAL_FAILURE(finishTheGuide());
    ASSERT_NO_FATAL_FAILURE(backUpAndRestore());
}

TEST_F(FirstStart, TheGuideComesAgainUntilItIsFinished) {
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", variables);
    ASSERT_TRUE(shows("push button", "Continue"));
    driver->type("Return");
    ASSERT_TRUE(shows("push button", "Back"));
    ASSERT_TRUE(driver->tabTo("Back"));
    driver->type("Return");
    ASSERT_TRUE(shows("heading", "Welcome to Norvane"))
        << "Return presses the button that the keyboard is on";
    driver->type("Return");
    ASSERT_TRUE(shows("push button", "Back"));
    driver->type("Return");
    ASSERT_TRUE(driver->tabTo("Enable failure alerts"));
    driver->type("Return");
    ASSERT_TRUE(shows("label", "Failure alerts enabled"));
    driver->type("Return"); // the button is gone
    ASSERT_TRUE(shows("push button", "Finish"));
    driver->type("Escape");
    ASSERT_TRUE(driver->waitUntilGone("push button", "Back"));
    user.action("onboarding");
    ASSERT_TRUE(shows("push button", "Back")) << "opened again, it shows its last state";
    user.action("quit");
    ASSERT_EQ(user.waitForExit(program, 15), 0);
    user.start(NORVANE_BIN_DIR "/norvane", variables);
    EXPECT_TRUE(shows("heading", "Welcome to Norvane"));
}

TEST_F(FirstStart, ThePaneWorksByKeyboardAlone) {
    const pid_t pane = user.start(NORVANE_BIN_DIR "/norvane-timemachine-settings", variables);
    ASSERT_TRUE(shows("push button", "Browse Backups"));
    for (const auto& [button, first] :
         {std::pair{"Options…", "Back up frequency"}, {"Change Backup Disk…", "Choose Folder…"}}) {
        ASSERT_TRUE(driver->tabTo(button));
        driver->type("Return");
        EXPECT_TRUE(driver->ringIsOn(first));
        driver->type("Escape");
        EXPECT_TRUE(driver->ringIsOn(button)) << "back where it came from";
    }
    driver->type("Escape");
    EXPECT_EQ(user.waitForExit(pane, 15), 0);
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
