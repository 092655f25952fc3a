// What a backup saves, notes and takes away.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <signal.h>
#include <stdlib.h>
#include <thread>
#include <time.h>

#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/session/result_code.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

std::string removedNote(const std::string& snapshot) {
    return "Removed the oldest backup to make room: " + fs::path(snapshot).filename().string() + "\n";
}

TEST_F(Tmutil, SnapshotsEqualTheTreeAndShareWhatDidNotChange) {
    useDestination();
    const std::string tree = box.tree();
    makeOddTree();
    backUp();
    const std::string first = box.snapshots().at(0);
    const std::string firstCopy = box.copyOf(first, tree);
    EXPECT_EQ(differences(box, tree, firstCopy), "");
    EXPECT_EQ(statOf(firstCopy + "/dir/plain").st_ino, statOf(firstCopy + "/dir/second name").st_ino);
    const auto before = fingerprint(first);

    // Within the same second and at the same size, by mode alone, and not at all.
    writeFile(tree + "/dir/sub/we[ir]d*?", "WE[IR]D*?");
    ::chmod((tree + "/dir/plain").c_str(), 0440);
    backUp();
    ASSERT_EQ(box.snapshots().size(), 2U);
    const std::string secondCopy = box.copyOf(box.snapshots().at(1), tree);
    EXPECT_EQ(differences(box, tree, secondCopy), "");
    EXPECT_EQ(fingerprint(first), before);
    EXPECT_EQ(statOf(firstCopy + "/dir/sub/new\nline").st_ino,
              statOf(secondCopy + "/dir/sub/new\nline").st_ino);
    EXPECT_EQ(box.tmutil({"latestbackup"}).output, box.snapshots().at(1) + "\n");
    EXPECT_EQ(box.recorded("SnapshotDates").array()->size(), 2U);
    EXPECT_EQ(box.recorded("AttemptDates").array()->size(), 2U);
    EXPECT_EQ(box.recordedResult(), ResultCode::success);
}

TEST_F(Tmutil, TwoUsersOfOneDestinationTakeTurns) {
    useDestination();
    startSlowBackup();
    const std::string copy = waitForCopyOf("a1");
    ::setenv("XDG_STATE_HOME", box.in("other state").c_str(), 1);
    expectRefusal({"startbackup", "--block"}, "another backup to this destination is running");
    ::unsetenv("XDG_STATE_HOME");
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
        expectRefusal({"startbackup", "--block"}, box.tree());
        EXPECT_EQ(box.recordedResult(), ResultCode::copyFailed) << mode;
        EXPECT_TRUE(box.snapshots().empty()) << mode;
    }
    ::chmod(box.tree().c_str(), 0700);
}

TEST_F(Tmutil, NotesAreStoredWhateverTheirBytes) {
    useDestination();
    useSources({box.tree(), "/gone/\xff\n\xc3\xa4"});
    backUp();
    EXPECT_EQ(box.recorded("SnapshotDates").array()->size(), 1U);
    EXPECT_EQ(notes(), "A folder to back up is missing: /gone/\\#377\\#012\xc3\xa4\n");
}

TEST_F(Tmutil, OtherFileSystemsBelowASourceAreNoted) {
    const std::string mount = box.tree() + "/mnt";
    fs::create_directories(mount);
    if (box.run({"mount", "-t", "tmpfs", "none", mount}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    useDestination();
    writeFile(mount + "/f", "x");
    backUp();
    EXPECT_EQ(notes(), "left out: " + mount + " is another file system\n");
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
    EXPECT_EQ(box.recorded("MessageParameters").array()->size(), 1U);
    EXPECT_NE(notes().find("secret"), std::string::npos);
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
        writeMegabytes(box.tree() + name, megabytes);
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
    expectRefusal({"startbackup", "--block"}, "No space left");
    EXPECT_EQ(box.recordedResult(), ResultCode::destinationFull);
    EXPECT_EQ(box.snapshots(), before);
    write("/new", 13); // now the oldest is enough
    backUp();
    EXPECT_EQ(box.snapshots().size(), 3U);
    EXPECT_EQ(notes(), removedNote(before.front()));
    EXPECT_EQ(box.run({"umount", box.destination()}).exitCode, 0);
}

TEST_F(Tmutil, OldBackupsMakeWayOnADiskFullToTheLastByte) {
    if (box.run({"mount", "-t", "tmpfs", "-o", "size=40m", "none", box.destination()}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    useDestination();
    writeMegabytes(box.tree() + "/replaced", 8);
    backUp();
    const std::string oldest = box.snapshots().front();
    writeFile(box.tree() + "/replaced", "small");
    backUp();
    EXPECT_NE(box.run({"dd", "if=/dev/zero", "of=" + box.destination() + "/others"}).exitCode, 0);
    backUp();
    EXPECT_EQ(box.snapshots().size(), 2U);
    EXPECT_EQ(notes(), removedNote(oldest));
    EXPECT_EQ(box.run({"umount", box.destination()}).exitCode, 0);
}

} // namespace

} // namespace norvane
