// What a backup saves, notes and takes away.
#include <signal.h>
#include <stdlib.h>
#include <sys/xattr.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/session/result_code.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;

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
        std::string copy = first.parent_path() / snapshotName(date);
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

TEST_F(Tmutil, OldBackupsStayWhereTheirRemovalMakesNoRoom) {
    if (box.run({"mount", "-t", "tmpfs", "-o", "size=40m", "none", box.destination()}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    useDestination();
    const auto write = [&](const char* name, std::size_t megabytes) {
        writeFile(box.tree() + name, std::string(megabytes << 20, 'x'));
    };
    write("/kept", 20);
    write("/replaced", 6);
    backUp();
    write("/replaced", 5);
    backUp();
    backUp();
    const auto before = box.snapshots();
    ASSERT_EQ(before.size(), 3U);
    write("/new", 19); // with the 6 MB that only the oldest holds, it would still be too much
    EXPECT_NE(box.tmutil({"startbackup", "--block"}).exitCode, 0);
    EXPECT_EQ(box.recordedResult(), static_cast<int>(ResultCode::destinationFull));
    EXPECT_EQ(box.snapshots(), before);
    write("/new", 13); // now the oldest is enough
    backUp();
    EXPECT_EQ(box.snapshots().size(), 3U);
    EXPECT_EQ(*box.recorded("MessageParameters").array()->front().string(),
              "Removed the oldest backup to make room: " + fs::path(before.front()).filename().string());
    EXPECT_EQ(box.run({"umount", box.destination()}).exitCode, 0);
}

TEST_F(Tmutil, OldBackupsMakeWayOnADiskFullToTheLastByte) {
    if (box.run({"mount", "-t", "tmpfs", "-o", "size=40m", "none", box.destination()}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    useDestination();
    writeFile(box.tree() + "/replaced", std::string(std::size_t{8} << 20, 'x'));
    backUp();
    const std::string oldest = fs::path(box.snapshots().front()).filename();
    writeFile(box.tree() + "/replaced", "small");
    backUp();
    EXPECT_NE(box.run({"dd", "if=/dev/zero", "of=" + box.destination() + "/others"}).exitCode, 0);
    backUp();
    EXPECT_EQ(box.snapshots().size(), 2U);
    EXPECT_EQ(*box.recorded("MessageParameters").array()->front().string(),
              "Removed the oldest backup to make room: " + oldest);
    EXPECT_EQ(box.run({"umount", box.destination()}).exitCode, 0);
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
