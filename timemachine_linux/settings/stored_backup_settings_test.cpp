#include "timemachine_linux/settings/stored_backup_settings.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

#include "platform/linux/processes/child_command_runner.h"
#include "tests/support/backup_sandbox.h"
#include "tests/support/failure_text.h"
#include "timemachine_linux/destination/destination.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

/// Over the real tool.
struct Stored {
    BackupSandbox box;
    ChildCommandRunner runner;
    std::string tmutil = NORVANE_LIBEXEC_DIR "/tmutil";
    StoredBackupSettings settings{runner, tmutil, userPlaces(), {runner, hourlyTimerPlaces(tmutil)}};
};

TEST(StoredBackupSettings, ChoosesTheDiskThroughTheTool) {
    Stored s;
    EXPECT_FALSE(s.settings.load().disk);
    EXPECT_NE(textOf(s.settings.chooseDestination(s.box.in("nowhere"))).find("No such file"),
              std::string::npos);
    const std::string odd = s.box.in("It's \"my\" disk");
    fs::create_directory(odd);
    ASSERT_EQ(textOf(s.settings.chooseDestination(odd)), "");
    const auto disk = s.settings.load().disk;
    ASSERT_TRUE(disk);
    EXPECT_EQ(disk->name, "It's \"my\" disk");
    EXPECT_TRUE(disk->connected);
    EXPECT_GT(disk->availableBytes.value_or(0), 0);
    EXPECT_EQ(disk->verdict.sharesDiskWith, s.box.tree());
    EXPECT_EQ(disk->backupsFolder, "");
    ASSERT_EQ(s.box.tmutil({"startbackup", "--block"}).exitCode, 0);
    const auto used = s.settings.load().disk;
    EXPECT_TRUE(used->latestBackup);
    EXPECT_TRUE(fs::is_directory(used->backupsFolder)) << used->backupsFolder;
    // The disk comes back later, or to another user: its backups are known at once.
    s.box.preferences.remove("Destinations");
    ASSERT_EQ(textOf(s.settings.chooseDestination(odd)), "");
    const auto again = s.settings.load().disk;
    EXPECT_EQ(again->latestBackup, used->latestBackup);
    EXPECT_EQ(again->backupsFolder, used->backupsFolder);
    EXPECT_GT(s.box.recorded("BytesUsed").exactInteger().value_or(0), 0);
    fs::remove(odd + "/" + destinationMarkerName);
    EXPECT_FALSE(s.settings.load().disk->connected);
    EXPECT_TRUE(s.settings.load().disk->latestBackup) << "what is known stays";
}

TEST(StoredBackupSettings, WhatTheToolRefusesIsRefusedBefore) {
    Stored s;
    EXPECT_EQ(s.settings.offerOf(s.box.tree()).verdict.problem, DestinationProblem::isSource);
    EXPECT_NE(textOf(s.settings.chooseDestination(s.box.tree())), "");
    fs::create_directory(s.box.tree() + "/inside");
    EXPECT_EQ(s.settings.offerOf(s.box.tree() + "/inside").verdict.insideSource, s.box.tree());
    EXPECT_EQ(textOf(s.settings.chooseDestination(s.box.tree() + "/inside")), "") << "allowed, and said";
}

TEST(StoredBackupSettings, KeepsFoldersOfAnyName) {
    Stored s;
    const Paths names = {"caf\xe9", "two\nlines", ".hidden"};
    for (const std::string& name : names)
        fs::create_directory(s.box.tree() + "/" + name);
    writeFile(s.box.tree() + "/file", "");
    auto found = s.settings.foldersIn(s.box.tree()).value_or(Paths());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (Paths{"caf\xe9", "two\nlines"}));
    EXPECT_FALSE(s.settings.foldersIn(s.box.tree() + "/file"));

    const std::string odd = s.box.tree() + "/caf\xe9";
    EXPECT_EQ(textOf(s.settings.addExclusion(odd)) + textOf(s.settings.addExclusion(odd)), "");
    EXPECT_EQ(s.settings.load().exclusions, Paths{odd});
    EXPECT_EQ(textOf(s.settings.removeExclusion(odd)), "");
    EXPECT_TRUE(s.settings.load().exclusions.empty());
    EXPECT_EQ(textOf(s.settings.addSource(odd)) + textOf(s.settings.addSource(odd)), "");
    EXPECT_EQ(s.settings.load().sources, (Paths{s.box.tree(), odd}));
    EXPECT_EQ(textOf(s.settings.removeSource(s.box.tree())), "");
    EXPECT_EQ(s.settings.load().sources, Paths{odd});
    EXPECT_EQ(textOf(s.settings.removeSource(odd)), "");
    EXPECT_TRUE(s.settings.load().sources.empty());
    std::vector<std::thread> others; // several panes and tools at once
    for (int i = 0; i < 8; ++i)
        others.emplace_back([i] {
            UserDefaultsFile preferences(timeMachinePreferences());
            EXPECT_FALSE(addSource(preferences, "/" + std::to_string(i), "/home"));
        });
    for (std::thread& other : others)
        other.join();
    EXPECT_EQ(s.settings.load().sources.size(), others.size());
    s.box.preferences.remove("SourceFolders");
    EXPECT_EQ(textOf(s.settings.addSource("/srv")), "");
    EXPECT_EQ(s.settings.load().sources, (Paths{s.box.home(), "/srv"}))
        << "the home folder is there by default";
}

TEST(StoredBackupSettings, TheFlagSaysWhatTheTimerDoes) {
    Stored s;
    const auto frequency = [&] { return s.settings.load().frequency; };
    EXPECT_EQ(frequency(), BackupFrequency::unknown);
    // Each choice also mends what another program has set without the timer.
    s.box.preferences.set("AutoBackup", {true});
    EXPECT_EQ(frequency(), BackupFrequency::hourlyWithoutTimer);
    EXPECT_EQ(textOf(s.settings.setHourly(true)), "");
    EXPECT_EQ(frequency(), BackupFrequency::hourly);
    s.box.preferences.set("AutoBackup", {false});
    EXPECT_EQ(frequency(), BackupFrequency::manual) << "the timer runs, but makes no backup";
    EXPECT_TRUE(s.box.timerIsOn());
    EXPECT_EQ(textOf(s.settings.setHourly(false)), "");
    EXPECT_FALSE(s.box.timerIsOn());
    EXPECT_EQ(s.box.preferences.object("AutoBackup"), PropertyList{false});

    s.box.putProgram("systemctl", "echo no manager >&2\nexit 1");
    EXPECT_EQ(textOf(s.settings.setHourly(true)), "no manager");
    EXPECT_EQ(frequency(), BackupFrequency::manual) << "nothing was set";
}

} // namespace

} // namespace norvane
