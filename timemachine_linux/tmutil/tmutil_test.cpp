// Wrong use, the switch of automatic backups, and what is left out.
#include <filesystem>
#include <stdlib.h>

#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/session/result_code.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

TEST_F(Tmutil, ExplainsWrongUse) {
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        const char* errors;
    };
    const Case cases[] = {
        {{}, 64, "Usage:"},
        {{"frobnicate"}, 64, "unknown verb"},
        {{"setdestination"}, 64, "usage: tmutil setdestination folder"},
        {{"status", "x"}, 64, "usage"},
        {{"startbackup", "--fast"}, 64, "unknown option"},
        {{"startbackup", "--block", "--fast"}, 64, "unknown option"},
        {{"help"}, 0, ""},
        {{"destinationinfo"}, 1, "tmutil: No destinations configured.\n"},
        {{"removedestination"}, 1, "No destinations configured"},
        {{"startbackup"}, 1, "No destinations configured"},
        {{"listbackups"}, 1, "No destinations configured"},
        {{"stopbackup"}, 0, ""},
        {{"setdestination", "/nonexistent/x"}, 1, "No such file"},
        {{"setdestination", box.tree()}, 1, "is itself backed up"},
        {{"addexclusion", "/nonexistent/x"}, 1, "No such file"},
        {{"localsnapshot"}, 1, "without snapshots"},
        {{"deletelocalsnapshots"}, 64, "usage"},
    };
    for (const Case& c : cases)
        expectRefusal(c.arguments, c.errors, c.exitCode);
    EXPECT_EQ(box.tmutil({"listlocalsnapshots", "/"}).output, "Snapshots for disk /:\n");
}

TEST_F(Tmutil, AutomaticBackupsFollowTheFlag) {
    useDestination();
    const auto automatic = [&] {
        EXPECT_EQ(box.tmutil({"startbackup", "--auto", "--block"}).exitCode, 0);
        return box.snapshots().size();
    };
    EXPECT_EQ(automatic(), 0U) << "nobody has enabled them";
    EXPECT_EQ(box.tmutil({"enable"}).exitCode, 0);
    EXPECT_TRUE(box.timerIsOn());
    EXPECT_EQ(automatic(), 1U);
    box.preferences.set("AutoBackup", {false}); // by another program, which leaves the timer as it is
    EXPECT_EQ(automatic(), 1U);
    box.preferences.set("AutoBackup", {true});
    EXPECT_EQ(box.tmutil({"disable"}).exitCode, 0);
    EXPECT_FALSE(box.timerIsOn());
    EXPECT_EQ(box.preferences.object("AutoBackup"), PropertyList{false});
    fs::remove(box.in("bin/systemctl"));
    ::setenv("PATH", box.in("bin").c_str(), 1);
    EXPECT_EQ(box.tmutil({"enable"}).errors, "tmutil: systemctl is not installed\n");
    expectRefusal({"startbackup"}, "rsync is not installed");
    EXPECT_EQ(box.recordedResult(), ResultCode::rsyncMissing);
    EXPECT_EQ(box.preferences.object("AutoBackup"), PropertyList{false});
}

TEST_F(Tmutil, LeavesOutExclusionsAndNothingElse) {
    useSources({"~"});
    ASSERT_EQ(box.tmutil({"setdestination", box.destination()}).exitCode, 0);
    const std::string home = box.home();
    for (const std::string folder :
         {".cache/x", ".local/share/Trash/files", "keep/.cache", "w*ld", "wild", "b\\[s"})
        fs::create_directories(fs::path(home) / folder);
    for (const std::string file : {"a\nb", "a", "\xff", "w*ld/f", "wild/f", "b\\[s/f", "keep/.cache/f"})
        writeFile(fs::path(home) / file, "x");
    const std::vector<std::string> excluded{"a\nb", "\xff", "w*ld", "b\\[s", "tree"};
    for (const std::string& name : excluded)
        EXPECT_EQ(box.tmutil({"addexclusion", fs::path(home) / name}).exitCode, 0);
    EXPECT_EQ(box.tmutil({"removeexclusion", home + "/tree"}).exitCode, 0);
    EXPECT_EQ(box.tmutil({"isexcluded", home + "/w*ld/f", home + "/wild", home + "/.cache/y", "/etc"}).output,
              "[Excluded]    " + home + "/w*ld/f\n[Included]    " + home + "/wild\n[Excluded]    " + home +
                  "/.cache/y\n[Excluded]    /etc\n");
    backUp();
    const std::string copy = box.copyOf(box.snapshots().at(0), home);
    for (const std::string name : {"a\nb", "\xff", "w*ld", "b\\[s", ".cache", ".local/share/Trash"})
        EXPECT_FALSE(fs::exists(fs::path(copy) / name)) << name;
    for (const std::string name : {"a", "wild/f", "keep/.cache/f", "tree"})
        EXPECT_TRUE(fs::exists(fs::path(copy) / name)) << name;

    useSources({home + "/gone"});
    EXPECT_EQ(box.tmutil({"startbackup", "--block"}).exitCode, 1);
    EXPECT_EQ(box.recordedResult(), ResultCode::nothingToBackUp);
    EXPECT_EQ(box.snapshots().size(), 1U);
}

} // namespace

} // namespace norvane
