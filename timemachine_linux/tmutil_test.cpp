// The program as people and other programs run it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "timemachine_linux/backup_sandbox.h"
#include "timemachine_linux/destination.h"
#include "timemachine_linux/file_lock.h"
#include "timemachine_linux/result_code.h"
#include "timemachine_linux/snapshot_name.h"
#include "timemachine_linux/snapshot_store.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;

struct stat statOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

/// What rsync would still have to do to make the copy equal, attributes and content included.
std::string differences(const BackupSandbox& box, const std::string& original, const std::string& copy) {
    const ToolResult result = box.run({"/usr/bin/rsync", "-naHAXci", "--modify-window=-1", "--delete",
                                       "--numeric-ids", original + "/", copy + "/"});
    return result.output + result.errors;
}

class Tmutil : public testing::Test {
protected:
    void useDestination() { ASSERT_EQ(box.tmutil({"setdestination", box.destination()}).exitCode, 0); }

    void backUp() {
        const ToolResult result = box.tmutil({"startbackup", "--block"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }

    /// A backup that takes many seconds, stopped in the middle of its copy.
    void startSlowBackup() {
        for (int i = 0; i < 50; ++i)
            writeFile(box.tree() + "/a" + std::to_string(i), "small");
        writeFile(box.tree() + "/big", std::string(std::size_t{40} << 20, 'x'));
        box.slowDownRsync(2000);
        ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return box.status("BackupPhase") == "Copying"; }));
    }

    /// The path that the file of the tree has in the unfinished snapshot, once it is there.
    std::string waitForCopyOf(const std::string& name) {
        std::string copy;
        EXPECT_TRUE(eventually([&] {
            for (const auto& entry : fs::recursive_directory_iterator(box.destination()))
                if (entry.path().extension() == ".inProgress")
                    copy = entry.path().string() + box.tree() + "/" + name;
            return fs::exists(fs::symlink_status(copy));
        })) << name;
        return copy;
    }

    void stopBackup() {
        EXPECT_EQ(box.tmutil({"stopbackup"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    }

    BackupSandbox box;
};

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
        {{"setdestination", "/etc/passwd"}, 1, "not a folder"},
        {{"setdestination", "/"}, 1, "root folder"},
        {{"setdestination", "/proc/self"}, 1, "/proc/"},
        {{"setdestination", box.tree()}, 1, "is itself backed up"},
        {{"setdestination", box.in("line\nfeed")}, 1, "must be UTF-8"},
        {{"addexclusion", "/nonexistent/x"}, 1, "No such file"},
        {{"localsnapshot"}, 1, "without snapshots"},
        {{"deletelocalsnapshots", "2024-05-01-101500"}, 1, "no local snapshot"},
        {{"deletelocalsnapshots"}, 64, "usage"},
        {{"restore", "x"}, 64, "usage"},
    };
    fs::create_directories(box.in("line\nfeed"));
    for (const Case& c : cases) {
        const ToolResult result = box.tmutil(c.arguments);
        const std::string verb = c.arguments.empty() ? "none" : c.arguments.back();
        EXPECT_EQ(result.exitCode, c.exitCode) << verb;
        EXPECT_NE(result.errors.find(c.errors), std::string::npos) << verb << ": " << result.errors;
    }
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
    EXPECT_EQ(box.preferences.object("AutoBackup"), PropertyList{false});
}

TEST_F(Tmutil, DestinationIsKnownByItsMarker) {
    useDestination();
    const auto destination = configuredDestination(box.preferences);
    ASSERT_TRUE(destination);
    const std::string heading = "> ==================================================\nName          : disk\n"
                                "Kind          : Local\n";
    const std::string mountPoint = "Mount Point   : " + box.destination() + "\n";
    const std::string id = "ID            : " + destination->id + "\n";
    EXPECT_EQ(box.tmutil({"destinationinfo"}).output, heading + mountPoint + id);

    // As after the disk went away and left its mount point.
    fs::rename(box.destination() + "/" + destinationMarkerName, box.in("marker"));
    EXPECT_EQ(box.tmutil({"destinationinfo"}).output, heading + id);
    const ToolResult result = box.tmutil({"startbackup"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("not available"), std::string::npos);
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::destinationUnavailable));
    EXPECT_TRUE(fs::is_empty(box.destination()));

    // The same folder again is the same destination, with its history.
    fs::rename(box.in("marker"), box.destination() + "/" + destinationMarkerName);
    useDestination();
    EXPECT_EQ(configuredDestination(box.preferences)->id, destination->id);
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::destinationUnavailable));
    EXPECT_EQ(box.tmutil({"removedestination"}).exitCode, 0);
    EXPECT_FALSE(configuredDestination(box.preferences));
}

TEST_F(Tmutil, DestinationInfoTellsTheUrlOfFileServersOnly) {
    useDestination();
    struct Case {
        const char* url;
        bool told;
    };
    const Case cases[] = {
        {"smb://nas/share", true},         {"afp://nas/share", true},      {"nfs://server/export", false},
        {"sftp://me@host/backups", false}, {"https://host/webdav", false}, {"smbx://nas/share", false},
    };
    for (const Case& c : cases) {
        box.preferences.update([&](PropertyList::Dictionary& all) {
            PropertyList::Dictionary entry = *all["Destinations"].array()->front().dictionary();
            entry["NetworkURL"] = {std::string(c.url)};
            all["Destinations"] = {PropertyList::Array{{std::move(entry)}}};
        });
        const std::string line = std::string("URL           : ") + c.url + "\n";
        const std::string output = box.tmutil({"destinationinfo"}).output;
        EXPECT_EQ(output.find(line) != std::string::npos, c.told) << c.url;
        EXPECT_EQ(output.find("URL") != std::string::npos, c.told) << c.url;
    }
}

TEST_F(Tmutil, SnapshotsEqualTheTreeAndShareWhatDidNotChange) {
    useDestination();
    const std::string tree = box.tree();
    fs::create_directories(tree + "/dir/empty");
    for (const std::string name :
         {"plain", "we[ir]d*?", "new\nline", "\xff\xfe bytes", "back\\slash", "-rf", "a:b"})
        writeFile(fs::path(tree + "/dir") / name, "content of " + name);
    fs::create_symlink("nowhere", tree + "/dangling");
    fs::create_hard_link(tree + "/dir/plain", tree + "/dir/second name");
    writeFile(tree + "/sealed", "x");
    ::chmod((tree + "/sealed").c_str(), 0400);
    ::setxattr((tree + "/sealed").c_str(), "user.note", "abc", 3, 0);
    (void)box.run({"setfacl", "-m", "u:12345:r", tree + "/dir/plain"});
    ::chmod((tree + "/dir/empty").c_str(), 0555);
    backUp();
    const std::string first = box.snapshots().at(0);
    const std::string firstCopy = box.copyOf(first, tree);
    EXPECT_EQ(differences(box, tree, firstCopy), "");
    EXPECT_EQ(statOf(firstCopy + "/dir/plain").st_ino, statOf(firstCopy + "/dir/second name").st_ino);
    const auto before = fingerprint(first);

    // Within the same second and at the same size, by mode alone, and not at all.
    writeFile(tree + "/dir/we[ir]d*?", "CONTENT of we[ir]d*?");
    ::chmod((tree + "/sealed").c_str(), 0440);
    backUp();
    ASSERT_EQ(box.snapshots().size(), 2U);
    const std::string secondCopy = box.copyOf(box.snapshots().at(1), tree);
    EXPECT_EQ(differences(box, tree, secondCopy), "");
    EXPECT_EQ(fingerprint(first), before);
    EXPECT_EQ(statOf(firstCopy + "/dir/new\nline").st_ino, statOf(secondCopy + "/dir/new\nline").st_ino);
    EXPECT_EQ(box.tmutil({"latestbackup"}).output, box.snapshots().at(1) + "\n");
    EXPECT_EQ(box.recorded("SnapshotDates").array()->size(), 2U);
    EXPECT_EQ(box.recorded("AttemptDates").array()->size(), 2U);
    EXPECT_EQ(box.recordedResult(), 0);
}

TEST_F(Tmutil, LeavesOutExclusionsAndNothingElse) {
    box.preferences.set("SourceFolders", {PropertyList::Array{{std::string("~")}}});
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

    box.preferences.set("SourceFolders", {PropertyList::Array{{home + "/gone"}}});
    EXPECT_EQ(box.tmutil({"startbackup", "--block"}).exitCode, 1);
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::nothingToBackUp));
    EXPECT_EQ(box.snapshots().size(), 1U);
}

TEST_F(Tmutil, DestinationInsideASourceIsNotBackedUp) {
    const std::string inside = box.tree() + "/back \"ups'";
    fs::create_directories(inside);
    writeFile(box.tree() + "/f", "x");
    const ToolResult result = box.tmutil({"setdestination", inside});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("It is itself left out"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("on the same disk"), std::string::npos) << result.output;
    EXPECT_NE(box.tmutil({"destinationinfo"}).output.find("Mount Point   : " + inside + "\n"),
              std::string::npos);
    backUp();
    ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
    EXPECT_EQ(box.status("DestinationMountPoint"), inside);
    ASSERT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    ASSERT_EQ(box.snapshots().size(), 2U);
    const auto isLeftOut = [&] {
        const std::string copy = box.copyOf(box.snapshots().back(), box.tree());
        EXPECT_TRUE(fs::exists(copy + "/f"));
        EXPECT_FALSE(fs::exists(copy + "/back \"ups'"));
    };
    isLeftOut();
    // By another way in, it is the same folder.
    const std::string way = box.in("way");
    fs::create_directories(way);
    if (box.run({"mount", "--bind", box.tree(), way}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    EXPECT_EQ(box.tmutil({"setdestination", way + "/back \"ups'"}).exitCode, 0);
    backUp();
    isLeftOut();
    EXPECT_EQ(box.status("Running"), "0");
    EXPECT_NE(box.tmutil({"setdestination", way}).errors.find("is itself backed up"), std::string::npos);
    EXPECT_EQ(box.run({"umount", way}).exitCode, 0);
}

TEST_F(Tmutil, StartLetsGoOfItsCallerAndOnlyOneRuns) {
    useDestination();
    startSlowBackup();
    // A reader of its output sees the end although a worker carries on.
    ASSERT_EQ(box.tmutil({"stopbackup"}).exitCode, 0);
    ASSERT_TRUE(eventually([&] { return !FileLock::isHeld(box.session.runLock); }));
    FILE* pipe = ::popen(NORVANE_LIBEXEC_DIR "/tmutil startbackup 2>&1", "r");
    std::array<char, 64> text{};
    EXPECT_EQ(std::fread(text.data(), 1, text.size(), pipe), 0U);
    EXPECT_EQ(::pclose(pipe), 0);
    EXPECT_EQ(box.status("Running"), "1");
    const pid_t worker = box.worker();
    EXPECT_NE(::getsid(worker), ::getsid(0));
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(worker) + "/cwd"), "/");
    const ToolResult second = box.tmutil({"startbackup", "--block"});
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_EQ(second.output, "A backup is already running.\n");
    EXPECT_EQ(box.worker(), worker);
}

TEST_F(Tmutil, TwoUsersOfOneDestinationTakeTurns) {
    useDestination();
    startSlowBackup();
    const std::string copy = waitForCopyOf("a1");
    ::setenv("XDG_STATE_HOME", box.in("other state").c_str(), 1);
    const ToolResult second = box.tmutil({"startbackup", "--block"});
    ::unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_NE(second.errors.find("another backup to this destination is running"), std::string::npos);
    EXPECT_TRUE(fs::exists(copy));
    stopBackup();
    box.slowDownRsync(0);
    backUp();
}

TEST_F(Tmutil, SnapshotsAreInTheOrderOfTime) {
    useDestination();
    for (const char* zone : {"Pacific/Auckland", "America/Los_Angeles"}) {
        ::setenv("TZ", zone, 1);
        backUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(1100)); // dates are whole seconds
    }
    const std::vector<std::string> snapshots = box.snapshots();
    ::unsetenv("TZ");
    ASSERT_EQ(snapshots.size(), 2U);
    EXPECT_GT(snapshots.front(), snapshots.back());
    EXPECT_EQ(box.tmutil({"latestbackup"}).output, snapshots.back() + "\n");
}

TEST_F(Tmutil, ASourceThatCannotBeReadIsAFailure) {
    box.becomeOrdinaryUser();
    useDestination();
    for (const mode_t mode : {0, 0444, 0111}) {
        ::chmod(box.tree().c_str(), mode);
        EXPECT_NE(box.tmutil({"startbackup", "--block"}).errors.find(box.tree()), std::string::npos) << mode;
        EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::copyFailed)) << mode;
        EXPECT_TRUE(box.snapshots().empty()) << mode;
    }
    ::chmod(box.tree().c_str(), 0700);
}

TEST_F(Tmutil, NotesAreStoredWhateverTheirBytes) {
    useDestination();
    box.preferences.set("SourceFolders",
                        {PropertyList::Array{{box.tree()}, {PropertyListData{"/gone/\xff\n\xc3\xa4"}}}});
    backUp();
    EXPECT_EQ(box.recorded("SnapshotDates").array()->size(), 1U);
    EXPECT_EQ(*box.recorded("MessageParameters").array()->front().string(),
              "A folder to back up is missing: /gone/\\#377\\#012\xc3\xa4");
}

TEST_F(Tmutil, OtherFileSystemsBelowASourceAreNoted) {
    const std::string mount = box.tree() + "/mnt";
    fs::create_directories(mount);
    if (box.run({"mount", "-t", "tmpfs", "none", mount}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    useDestination();
    writeFile(mount + "/f", "x");
    backUp();
    EXPECT_EQ(*box.recorded("MessageParameters").array()->front().string(),
              "left out: " + mount + " is another file system");
    EXPECT_TRUE(fs::is_empty(box.copyOf(box.snapshots().at(0), mount)));
    EXPECT_EQ(box.run({"umount", mount}).exitCode, 0);
}

TEST_F(Tmutil, StopIsNoFailureAndTheNextRunKeepsWhatWasFinished) {
    useDestination();
    writeFile(box.tree() + "/old", "old");
    backUp();
    const std::string first = box.snapshots().at(0);
    const auto before = fingerprint(first);
    startSlowBackup();
    const auto inode = statOf(waitForCopyOf("a1")).st_ino;
    stopBackup();
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::stopped));
    EXPECT_EQ(box.snapshots().size(), 1U);

    // The leftover shares "old" with the first snapshot, where its mode must not change with the source's.
    ::chmod((box.tree() + "/old").c_str(), 0600);
    fs::remove(box.tree() + "/a2");
    box.slowDownRsync(0);
    backUp();
    ASSERT_EQ(box.snapshots().size(), 2U);
    const std::string copy = box.copyOf(box.snapshots().at(1), box.tree());
    EXPECT_EQ(differences(box, box.tree(), copy), "");
    EXPECT_EQ(statOf(copy + "/a1").st_ino, inode);
    EXPECT_EQ(fingerprint(first), before);
}

TEST_F(Tmutil, ALinkInALeftoverNeverLeadsOutOfIt) {
    useDestination();
    fs::create_directories(box.in("outside/x"));
    writeFile(box.in("outside/precious"), "p");
    writeFile(box.in("outside/x/precious"), "p");
    fs::create_directory_symlink(box.in("outside"), box.tree() + "/0link");
    startSlowBackup();
    (void)waitForCopyOf("0link");
    stopBackup();
    fs::remove(box.tree() + "/0link");
    fs::create_directories(box.tree() + "/0link/x");
    writeFile(box.tree() + "/0link/x/mine", "m");
    box.preferences.set("SourceFolders", {PropertyList::Array{{box.tree() + "/0link/x"}}});
    backUp();
    EXPECT_TRUE(fs::exists(box.in("outside/precious")));
    EXPECT_TRUE(fs::exists(box.in("outside/x/precious")));
    const std::string copy = box.copyOf(box.snapshots().at(0), box.tree());
    EXPECT_FALSE(fs::is_symlink(copy + "/0link"));
    EXPECT_EQ(differences(box, box.tree() + "/0link", copy + "/0link"), "");
    EXPECT_FALSE(fs::exists(copy + "/big"));

    // Nor does one in the place of this machine's folder.
    fs::rename(box.destination() + "/" + hostFolderName(), box.in("outside/host"));
    fs::create_directory_symlink(box.in("outside/host"), box.destination() + "/" + hostFolderName());
    const auto before = fingerprint(box.in("outside"));
    EXPECT_EQ(box.tmutil({"startbackup", "--block"}).exitCode, 1);
    EXPECT_TRUE(box.snapshots().empty());
    EXPECT_EQ(fingerprint(box.in("outside")), before);
}

TEST_F(Tmutil, StatusNeverClaimsADeadRunAndItsCopyDiesWithIt) {
    useDestination();
    startSlowBackup();
    EXPECT_EQ(box.status("Running"), "1");
    EXPECT_EQ(box.status("DestinationMountPoint"), box.destination());
    ::kill(box.worker(), SIGKILL);
    EXPECT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    EXPECT_TRUE(eventually([&] { return !FileLock::isHeld(box.session.copyLock); }));
    EXPECT_TRUE(box.snapshots().empty());
}

TEST_F(Tmutil, UnreadableFilesAreReportedAndTheRestIsSaved) {
    useDestination();
    writeFile(box.tree() + "/readable", "x");
    writeFile(box.tree() + "/secret", "x");
    ::chmod((box.tree() + "/secret").c_str(), 0);
    box.becomeOrdinaryUser();
    backUp();
    EXPECT_TRUE(fs::exists(box.copyOf(box.snapshots().at(0), box.tree()) + "/readable"));
    const PropertyList messages = box.recorded("MessageParameters");
    ASSERT_EQ(messages.array()->size(), 1U);
    EXPECT_NE(messages.array()->front().string()->find("secret"), std::string::npos);
}

TEST_F(Tmutil, AFileThatChangesWhileItIsCopiedHarmsNoOther) {
    useDestination();
    for (const char* name : {"a", "z"})
        writeFile(box.tree() + "/" + name, std::string(std::size_t{1} << 20, *name));
    const std::string path = box.tree() + "/changing";
    writeFile(path, std::string(std::size_t{4} << 20, '0'));
    box.slowDownRsync(8000);
    ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
    for (int i = 0; FileLock::isHeld(box.session.runLock); ++i) {
        writeFile(path,
                  std::string(static_cast<std::size_t>(1 + i % 4) << 20, static_cast<char>('1' + i % 9)));
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(box.recordedResult(), 0);
    ASSERT_EQ(box.snapshots().size(), 1U);
    const std::string copy = box.copyOf(box.snapshots().at(0), box.tree());
    for (const char* name : {"/a", "/z"})
        EXPECT_EQ(box.run({"cmp", box.tree() + name, copy + name}).exitCode, 0) << name;
    const PropertyList notes = box.recorded("MessageParameters");
    for (const PropertyList& note : *notes.array())
        EXPECT_NE(note.string()->find("changing"), std::string::npos) << *note.string();
    box.slowDownRsync(0);
    backUp();
    EXPECT_EQ(differences(box, box.tree(), box.copyOf(box.snapshots().at(1), box.tree())), "");
}

TEST_F(Tmutil, OldBackupsMakeWayAndAKillHarmsNone) {
    constexpr int files = 1500;
    for (int i = 0; i < files; ++i)
        writeFile(box.tree() + "/" + std::to_string(i), "x");
    useDestination();
    backUp();
    const fs::path first = box.snapshots().at(0);
    const auto content = fingerprint(box.copyOf(first, box.tree()));
    const auto makeOlder = [&](int daysAgo, int second) {
        const Instant date = Instant(std::chrono::seconds(::time(nullptr))) - std::chrono::days(daysAgo) +
                             std::chrono::seconds(second);
        const std::string copy = first.parent_path() / snapshotName(date);
        const std::string stamp = "@" + std::to_string(date.time_since_epoch().count() / 1'000'000);
        EXPECT_EQ(box.run({"cp", "-al", first, copy}).exitCode, 0);
        EXPECT_EQ(box.run({"touch", "-d", stamp, copy}).exitCode, 0);
        return copy;
    };
    std::vector<std::string> kept;
    for (const int daysAgo : {200, 100, 3, 2}) {
        for (int second = 0; second < 4; ++second)
            makeOlder(daysAgo, second);
        kept.push_back(makeOlder(daysAgo, 4));
    }
    ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
    const pid_t worker = box.worker();
    ASSERT_TRUE(eventually([&] {
        return box.status("BackupPhase") == "ThinningPostBackup" || !FileLock::isHeld(box.session.runLock);
    }));
    ::kill(worker, SIGKILL);
    ASSERT_TRUE(eventually([&] { return !FileLock::isHeld(box.session.runLock); }));
    for (const std::string& snapshot : box.snapshots())
        EXPECT_EQ(fingerprint(box.copyOf(snapshot, box.tree())), content) << snapshot;
    backUp();
    std::vector<std::string> left = box.snapshots();
    EXPECT_EQ(box.recorded("SnapshotDates").array()->size(), left.size());
    EXPECT_EQ(left.size(), kept.size() + 3);
    left.resize(kept.size());
    EXPECT_EQ(left, kept);
    for (const auto& entry : fs::directory_iterator(first.parent_path()))
        EXPECT_NE(entry.path().extension(), ".inProgress");
}

TEST_F(Tmutil, RsyncMissingAndDiskFullAreToldApart) {
    writeFile(box.in("image"), "");
    fs::resize_file(box.in("image"), std::uintmax_t{64} << 20);
    if (box.run({"mkfs.ext4", "-q", "-F", box.in("image")}).exitCode != 0 ||
        box.run({"mount", "-o", "loop", box.in("image"), box.destination()}).exitCode != 0)
        GTEST_SKIP() << "needs root and loop devices";
    useDestination();
    writeFile(box.tree() + "/small", "x");
    backUp();
    const auto before = fingerprint(box.snapshots().at(0));
    writeFile(box.tree() + "/big", std::string(std::size_t{80} << 20, 'x'));
    const ToolResult full = box.tmutil({"startbackup", "--block"});
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_NE(full.errors.find("No space left"), std::string::npos) << full.errors;
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::destinationFull));
    ASSERT_EQ(box.snapshots().size(), 1U);
    EXPECT_EQ(fingerprint(box.snapshots().at(0)), before);
    fs::remove(box.tree() + "/big");
    backUp();
    EXPECT_EQ(box.snapshots().size(), 2U);
    // What would fit after the oldest have gone does.
    for (const int round : {1, 2, 3}) { // of different sizes: this file system's times are whole seconds
        writeFile(box.tree() + "/medium",
                  std::string((std::size_t{18} << 20) + static_cast<std::size_t>(round), 'x'));
        backUp();
    }
    const auto left = box.snapshots();
    ASSERT_GE(left.size(), 2U);
    for (const std::string& snapshot : left)
        EXPECT_TRUE(fs::exists(box.copyOf(snapshot, box.tree() + "/medium"))) << snapshot;
    EXPECT_TRUE(std::any_of(left.begin(), left.end(), [&](const std::string& snapshot) {
        return differences(box, box.tree(), box.copyOf(snapshot, box.tree())).empty();
    }));
    ::setenv("PATH", "/nonexistent", 1);
    EXPECT_NE(box.tmutil({"startbackup"}).errors.find("rsync is not installed"), std::string::npos);
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::rsyncMissing));
    ::setenv("PATH", "/usr/bin:/bin:/usr/sbin:/sbin", 1);
    EXPECT_EQ(box.run({"umount", box.destination()}).exitCode, 0);
}

} // namespace
} // namespace norvane
