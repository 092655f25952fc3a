#include "timemachine_linux/settings/hourly_timer.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/test_peers.h"
#include "timemachine_linux/settings/hourly_units.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

/// systemd's manager as far as the timer needs it.
struct Manager final : CommandRunner {
    std::string missing; ///< The word that it refuses, or "all".
    int refusal = 1;
    bool there = true;
    mutable bool active = false;
    mutable std::vector<std::string> asked;

    std::optional<CommandResult> run(const std::string& program, const std::vector<std::string>& arguments,
                                     double /*timeoutSeconds*/) const override {
        EXPECT_EQ(program, "/bin/systemctl");
        EXPECT_EQ(arguments[0], "--user");
        const std::string& verb = arguments.at(2);
        asked.push_back(verb);
        if (!there)
            return CommandResult{1, "", "Failed to connect to bus: No medium found\nmore\n"};
        if (verb == missing || missing == "all")
            return CommandResult{refusal, "", ""};
        if (verb == "enable" || verb == "disable")
            active = verb == "enable";
        return CommandResult{verb == "is-active" && !active ? 3 : 0, "", ""};
    }
};

TEST(HourlyTimer, IsStartedAndStoppedForGood) {
    ScratchFolder folder;
    Manager manager;
    const std::string units = folder.path("config/systemd/user");
    const HourlyTimer timer(manager, {"/bin/systemctl", units, "/lib/tmutil", {}});
    EXPECT_EQ(timer.state(), HourlyTimer::State::inactive);
    EXPECT_EQ(textOf(timer.start()), "");
    EXPECT_EQ(timer.state(), HourlyTimer::State::active);
    EXPECT_TRUE(fs::exists(units + "/norvane-timemachine.timer"));
    EXPECT_EQ(textOf(timer.start()), "") << "again";
    EXPECT_EQ(textOf(timer.stop()), "");
    EXPECT_EQ(timer.state(), HourlyTimer::State::inactive);
    EXPECT_TRUE(fs::is_empty(units));
    EXPECT_EQ(textOf(timer.stop()), "") << "what is not there needs no stopping";
}

TEST(HourlyTimer, LeavesNothingBehindWhereItCannotRun) {
    struct Case {
        bool there;
        std::string refused;
        std::string systemctl;
        std::string failure;
    };
    for (const Case& c : {Case{false, "", "/bin/systemctl", "Failed to connect to bus: No medium found"},
                          {true, "enable", "/bin/systemctl", "systemctl --user enable failed"},
                          {true, "is-active", "/bin/systemctl", "systemctl --user is-active failed"},
                          {true, "", "", "systemctl is not installed"}}) {
        ScratchFolder folder;
        Manager manager;
        manager.there = c.there;
        manager.missing = c.refused;
        const HourlyTimer timer(manager, {c.systemctl, folder.path("units"), "/lib/tmutil", {}});
        EXPECT_EQ(textOf(timer.start()), c.failure) << c.failure;
        EXPECT_TRUE(fs::is_empty(folder.path("units"))) << c.failure;
        EXPECT_EQ(textOf(timer.stop()), "") << "nothing runs";
    }
    ScratchFolder folder;
    Manager manager;
    std::ofstream(folder.path("file")) << "no folder";
    const HourlyTimer timer(manager, {"/bin/systemctl", folder.path("file/units"), "/lib/tmutil", {}});
    EXPECT_NE(textOf(timer.start()), "");
}

TEST(HourlyTimer, StaysOnWhenTheManagerWillNotOrDoesNotAnswer) {
    ScratchFolder folder;
    Manager manager;
    const HourlyTimer timer(manager, {"/bin/systemctl", folder.path("units"), "/lib/tmutil", {}});
    ASSERT_FALSE(timer.start());
    manager.missing = "daemon-reload";
    EXPECT_EQ(textOf(timer.start()), "systemctl --user daemon-reload failed") << "again";
    EXPECT_EQ(timer.state(), HourlyTimer::State::active);
    manager.missing = "disable";
    EXPECT_EQ(textOf(timer.stop()), "systemctl --user disable failed");
    EXPECT_TRUE(fs::exists(folder.path("units/norvane-timemachine.timer")));
    for (const int signal : {SIGTERM, SIGKILL}) { // as the runner ends a tool that hangs
        manager.missing = "all";
        manager.refusal = signal;
        EXPECT_EQ(textOf(timer.stop()), "systemctl --user disable does not answer");
        EXPECT_EQ(timer.state(), HourlyTimer::State::unknown);
        EXPECT_TRUE(fs::exists(folder.path("units/norvane-timemachine.timer")));
    }
}

TEST(HourlyTimer, WritesUnitsThatSystemdUnderstands) {
    EXPECT_NE(hourlyService("/a b/$x%\"\\", {{"XDG_CONFIG_HOME", "/c $d%"}})
                  .find("Environment=\"XDG_CONFIG_HOME=/c $d%%\"\nExecStart=/usr/bin/env \"/a "
                        "b/$$x%%\\\"\\\\\" startbackup --auto "),
              std::string::npos);
    if (!installed("systemd-analyze"))
        GTEST_SKIP() << "systemd-analyze is not installed";
    ScratchFolder folder;
    const std::string odd = folder.path("it's 100% \"odd\"");
    fs::create_directory(odd);
    fs::copy("/bin/true", odd + "/tmutil");
    std::ofstream(folder.path(hourlyServiceUnit))
        << hourlyService(odd + "/tmutil", {{"XDG_STATE_HOME", odd}});
    std::ofstream(folder.path(hourlyTimerUnit)) << hourlyTimer();
    PeerProcess analyze({"systemd-analyze", "--user", "verify", folder.path(hourlyTimerUnit)},
                        {"XDG_RUNTIME_DIR=" + folder.path()});
    EXPECT_EQ(analyze.waitForExit(30), 0);
    EXPECT_EQ(analyze.output(), "");
}

} // namespace

} // namespace norvane
