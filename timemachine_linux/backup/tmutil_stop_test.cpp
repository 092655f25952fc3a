// Backups that run on their own: starting, watching and stopping them, and what the next run makes of a
// leftover.
#include <filesystem>
#include <signal.h>
#include <unistd.h>

#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/session/result_code.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

TEST_F(Tmutil, StartLetsGoOfItsCallerAndOnlyOneRuns) {
    useDestination();
    startSlowBackup();
    // A reader of its output sees the end although a worker carries on.
    ASSERT_EQ(box.tmutil({"stopbackup"}).exitCode, 0);
    ASSERT_TRUE(eventually([&] { return !FileLock::isHeld(box.session.runLock); }));
    EXPECT_EQ(
        box.run({"sh", "-c", "test -z \"$(" NORVANE_LIBEXEC_DIR "/tmutil startbackup 2>&1)\""}).exitCode, 0);
    EXPECT_EQ(box.status("Running"), "1");
    const pid_t worker = box.worker();
    EXPECT_NE(::getsid(worker), ::getsid(0));
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(worker) + "/cwd"), "/");
    EXPECT_EQ(box.tmutil({"startbackup", "--block"}).output, "A backup is already running.\n");
    EXPECT_EQ(box.worker(), worker);
}

TEST_F(Tmutil, StopIsNoFailureAndTheNextRunKeepsWhatWasFinished) {
    useDestination();
    writeFile(box.tree() + "/old", "old");
    backUp();
    const std::string first = box.snapshots().at(0);
    const auto before = fingerprint(first);
    startSlowBackup();
    const auto inode = statOf(waitForCopyOf("a1")).st_ino;
    const auto asked = std::chrono::steady_clock::now();
    stopBackup();
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(9)) << "rsync had to be killed";
    EXPECT_EQ(box.recordedResult(), ResultCode::stopped);
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
    useSources({box.tree() + "/0link/x"});
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

} // namespace

} // namespace norvane
