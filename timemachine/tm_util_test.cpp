#include "timemachine/tm_util.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

namespace norvane {

namespace {

/// Answers every command with the same result and keeps the last command line.
struct OneAnswer final : CommandRunner {
    std::optional<CommandResult> answer;
    mutable std::string commandLine;
    mutable double timeout = 0;

    std::optional<CommandResult> run(const std::string& executablePath,
                                     const std::vector<std::string>& arguments,
                                     double timeoutSeconds) const override {
        commandLine = executablePath;
        for (const std::string& argument : arguments)
            commandLine += " " + argument;
        timeout = timeoutSeconds;
        return answer;
    }
};

struct TMUtilTest : testing::Test {
    OneAnswer runner;
    SimulatedNetworkProbe network;
    SimulatedWorkspace workspace;
    TMUtil tmUtil{runner, {"/usr/bin/tmutil", "/usr/bin/defaults"}, network, workspace};

    void ran(const std::string& commandLine, double timeout) const {
        EXPECT_EQ(runner.commandLine, commandLine);
        EXPECT_EQ(runner.timeout, timeout);
    }
};

TEST_F(TMUtilTest, RunsExactlyTheseCommands) {
    (void)tmUtil.status();
    ran("/usr/bin/tmutil status", 15);
    (void)tmUtil.destinationSummary();
    ran("/usr/bin/tmutil destinationinfo", 15);
    (void)tmUtil.startBackup();
    ran("/usr/bin/tmutil startbackup", 15);
    tmUtil.stopBackup();
    ran("/usr/bin/tmutil stopbackup", 15);
    (void)tmUtil.destinationStatuses();
    ran("/usr/bin/defaults export /Library/Preferences/com.apple.TimeMachine.plist -", 10);
    (void)tmUtil.listLocalSnapshots("/", *Calendar::inZone("UTC"));
    ran("/usr/bin/tmutil listlocalsnapshots /", 15);
    (void)tmUtil.deleteLocalSnapshot("2024-05-01-101500");
    ran("/usr/bin/tmutil deletelocalsnapshots 2024-05-01-101500", 30);
    (void)tmUtil.autoBackupEnabled();
    ran("/usr/bin/defaults read /Library/Preferences/com.apple.TimeMachine.plist AutoBackup", 10);
}

TEST_F(TMUtilTest, AFailingToolGivesTheNeutralValue) {
    const std::string output = "/*\ncom.apple.TimeMachine.2024-05-01-101500.local\n*/"
                               "{Running=1;Destinations=({});}";
    for (const auto& answer : {std::optional<CommandResult>{}, std::optional(CommandResult{1, output, ""})}) {
        runner.answer = answer;
        EXPECT_EQ(tmUtil.status(), TMStatus::idle());
        EXPECT_TRUE(tmUtil.destinationStatuses().empty());
        EXPECT_TRUE(tmUtil.listLocalSnapshots("/", *Calendar::inZone("UTC")).empty());
        EXPECT_EQ(tmUtil.autoBackupEnabled(), std::nullopt);
        EXPECT_EQ(tmUtil.startBackup(), answer);
        EXPECT_FALSE(tmUtil.deleteLocalSnapshot("2024-05-01-101500"));
    }
    runner.answer = CommandResult{1, "Name : Disk\n", ""};
    EXPECT_EQ(tmUtil.destinationSummary().name, "Disk") << "whatever the exit code";
}

TEST_F(TMUtilTest, AutoBackupIsOnOnlyForOne) {
    const std::pair<const char*, bool> cases[] = {{"1\n", true},    {" \t1\r\n", true}, {"0\n", false},
                                                  {"YES\n", false}, {"11", false},      {"", false}};
    for (const auto& [output, enabled] : cases) {
        runner.answer = CommandResult{0, output, ""};
        EXPECT_EQ(tmUtil.autoBackupEnabled(), enabled) << output;
    }
}

} // namespace

} // namespace norvane
