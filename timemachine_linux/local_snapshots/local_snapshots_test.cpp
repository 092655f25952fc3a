// Local snapshots on a real Btrfs file system, by the program and by its parts.
#include "timemachine_linux/local_snapshots/local_snapshots.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include "platform/linux/files/small_file.h"
#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/files/btrfs_subvolume.h"
#include "timemachine_linux/local_snapshots/local_snapshot_name.h"
#include "timemachine_linux/local_snapshots/local_snapshot_removal.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

Instant wallClock() { return Instant(std::chrono::seconds(::time(nullptr))); }

/// The sources are a folder on a volume of its own.
class LocalSnapshotsOnBtrfs : public Tmutil {
protected:
    void SetUp() override { mount("rw"); }

    void mount(const std::string& options) {
        fs::create_directories(volume);
        image.emplace(box, "btrfs", volume, options);
        if (!image->mounted())
            GTEST_SKIP() << "no Btrfs, no loop devices, or no right to mount";
        fs::create_directories(docs);
        writeFile(docs + "/file", "content");
        useSources({docs});
        useDestination();
    }

    [[nodiscard]] std::string listed(const std::string& argument) const {
        const ToolResult result = box.tmutil({"listlocalsnapshots", argument});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const std::string heading = "Snapshots for disk " + argument + ":\n";
        EXPECT_TRUE(result.output.starts_with(heading)) << result.output;
        return result.output.substr(std::min(heading.size(), result.output.size()));
    }

    std::string makeSnapshot() {
        const ToolResult result = box.tmutil({"localsnapshot"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const std::string heading = "Created local snapshot with date: ";
        EXPECT_TRUE(result.output.starts_with(heading)) << result.output;
        return result.output.substr(heading.size(), 17);
    }

    const std::string volume = box.in("volume");
    const std::string docs = volume + "/u/docs";
    const LocalSnapshots snapshots{volume};
    std::optional<MountedImage> image;
};

TEST_F(LocalSnapshotsOnBtrfs, AreMadeListedAndDeleted) {
    EXPECT_EQ(listed("/"), "");
    const std::string first = makeSnapshot();
    writeFile(docs + "/file", "changed");
    const std::string second = makeSnapshot();
    EXPECT_LT(first, second);
    EXPECT_EQ(listed("/"), localSnapshotName(first) + "\n" + localSnapshotName(second) + "\n");
    EXPECT_EQ(listed(docs), listed("/"));
    EXPECT_EQ(listed(box.home()), "");
    EXPECT_EQ(readSmallFile(snapshots.pathOf(first) + "/u/docs/file"), "content");
    EXPECT_EQ(readSmallFile(snapshots.pathOf(second) + "/u/docs/file"), "changed");
    EXPECT_NE(box.run({"touch", snapshots.pathOf(first) + "/u/docs/file"}).exitCode, 0);
    EXPECT_EQ(statOf(snapshots.folder()).st_mode & ALLPERMS, 0700U);

    EXPECT_EQ(box.tmutil({"listlocalsnapshots", "/nonexistent"}).exitCode, 1);
    for (const std::string& wrong : {std::string("2001-01-01-000000"), docs, box.home(), std::string("x")})
        EXPECT_EQ(box.tmutil({"deletelocalsnapshots", wrong}).exitCode, 1) << wrong;
    EXPECT_EQ(box.tmutil({"deletelocalsnapshots", first}).output, "Deleted local snapshot '" + first + "'\n");
    EXPECT_EQ(listed("/"), localSnapshotName(second) + "\n");
    (void)makeSnapshot();
    EXPECT_EQ(box.tmutil({"deletelocalsnapshots", volume}).exitCode, 0);
    EXPECT_EQ(listed("/"), "");
    EXPECT_EQ(box.tmutil({"deletelocalsnapshots", "/"}).exitCode, 0);
}

TEST_F(LocalSnapshotsOnBtrfs, AreNeverTakenForWhatIsNotOurs) {
    const std::string token = makeSnapshot();
    // Another volume's snapshot, a plain folder and a link, all by our kind of name.
    EXPECT_EQ(box.run({"btrfs", "subvolume", "create", volume + "/mine"}).exitCode, 0);
    const auto named = [&](const char* date) { return snapshots.pathOf(date); };
    EXPECT_EQ(box.run({"btrfs", "subvolume", "snapshot", "-r", volume + "/mine", named("2024-01-01-000000")})
                  .exitCode,
              0);
    EXPECT_EQ(box.run({"btrfs", "subvolume", "snapshot", volume, snapshots.folder() + "/mine"}).exitCode, 0);
    fs::create_directories(named("2024-01-02-000000"));
    fs::create_directory_symlink(snapshots.pathOf(token), named("2024-01-03-000000"));
    EXPECT_EQ(listed("/"), localSnapshotName(token) + "\n");
    EXPECT_EQ(box.tmutil({"deletelocalsnapshots", "/"}).exitCode, 0);
    for (const std::string& left : {named("2024-01-01-000000"), named("2024-01-02-000000"),
                                    named("2024-01-03-000000"), snapshots.folder() + "/mine"})
        EXPECT_TRUE(fs::exists(fs::symlink_status(left))) << left;

    // A link in the place of the folder is not followed.
    fs::rename(snapshots.folder(), volume + "/elsewhere");
    const auto before = fingerprint(volume + "/u");
    fs::create_directory_symlink(volume + "/elsewhere", snapshots.folder());
    EXPECT_EQ(listed("/"), "");
    EXPECT_NE(box.tmutil({"localsnapshot"}).errors.find(snapshots.folder()), std::string::npos);
    backUp();
    EXPECT_EQ(fingerprint(volume + "/u"), before);
}

TEST_F(LocalSnapshotsOnBtrfs, MakeABackupOfOneMoment) {
    ::chmod(volume.c_str(), 0751);
    fs::create_directories(docs + "/left out");
    writeFile(docs + "/left out/f", "x");
    ASSERT_EQ(box.tmutil({"addexclusion", docs + "/left out"}).exitCode, 0);
    for (const char* name : {"a-big", "b-big"})
        writeMegabytes(docs + "/" + name, 6);
    writeFile(docs + "/z", "old");
    writeFile(box.tree() + "/in place", "x");
    useSources({docs, box.tree()});
    box.slowDownRsync(4000);
    ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
    ASSERT_TRUE(eventually([&] { return box.status("BackupPhase") == "Copying"; }));
    writeFile(docs + "/z", "new");
    expectRefusal({"deletelocalsnapshots", volume}, "is being backed up");
    ASSERT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    EXPECT_EQ(notes(), "");

    ASSERT_EQ(box.snapshots().size(), 1U);
    const std::string first = box.snapshots().at(0);
    const std::string copy = box.copyOf(first, docs);
    EXPECT_EQ(readSmallFile(copy + "/z"), "old");
    EXPECT_FALSE(fs::exists(copy + "/left out"));
    EXPECT_TRUE(fs::exists(box.copyOf(first, box.tree()) + "/in place"));
    for (const std::string& folder : {docs, volume + "/u", volume, fs::path(volume).parent_path().string()}) {
        const struct stat original = statOf(folder);
        const struct stat saved = statOf(box.copyOf(first, folder));
        EXPECT_EQ(saved.st_mode, original.st_mode) << folder;
        EXPECT_EQ(saved.st_mtim.tv_sec, original.st_mtim.tv_sec) << folder;
    }
    EXPECT_EQ(snapshots.list().size(), 1U) << "the restore point";

    box.slowDownRsync(0);
    const auto before = fingerprint(first);
    backUp();
    const std::string second = box.copyOf(box.snapshots().at(1), docs);
    EXPECT_EQ(readSmallFile(second + "/z"), "new");
    EXPECT_EQ(statOf(second + "/a-big").st_ino, statOf(copy + "/a-big").st_ino);
    EXPECT_EQ(fingerprint(first), before);

    // The volume itself as a source, and with it the top folder of the snapshots.
    useSources({volume});
    backUp();
    const std::string whole = box.copyOf(box.snapshots().back(), volume);
    EXPECT_EQ(statOf(whole).st_mode, statOf(volume).st_mode);
    EXPECT_TRUE(fs::exists(whole + "/u/docs/z"));
    EXPECT_FALSE(fs::exists(whole + "/" + std::string(localSnapshotsFolderName)));
    EXPECT_EQ(statOf(whole + "/u/docs/a-big").st_ino, statOf(copy + "/a-big").st_ino);
}

TEST_F(LocalSnapshotsOnBtrfs, AreNotUsedWhereTheyWouldMissSomething) {
    fs::create_directories(docs + "/bound");
    ASSERT_EQ(box.run({"mount", "--bind", volume + "/u", docs + "/bound"}).exitCode, 0);
    writeFile(volume + "/u/seen", "x");
    backUp();
    EXPECT_EQ(box.run({"umount", docs + "/bound"}).exitCode, 0);
    EXPECT_TRUE(fs::exists(box.copyOf(box.snapshots().back(), docs) + "/bound/seen"));
    EXPECT_TRUE(snapshots.list().empty());

    // They would keep the room that old backups on the same volume make way for.
    fs::create_directories(volume + "/backups");
    ASSERT_EQ(box.tmutil({"setdestination", volume + "/backups"}).exitCode, 0);
    backUp();
    EXPECT_TRUE(snapshots.list().empty());

    ASSERT_EQ(box.tmutil({"setdestination", box.destination()}).exitCode, 0);
    EXPECT_EQ(box.run({"btrfs", "subvolume", "create", volume + "/sub"}).exitCode, 0);
    writeFile(volume + "/sub/f", "x");
    useSources({volume, volume + "/sub"});
    backUp();
    EXPECT_TRUE(fs::exists(box.copyOf(box.snapshots().back(), volume) + "/sub/f"));
    EXPECT_TRUE(snapshots.list().empty());
    useSources({docs, volume + "/sub"});
    backUp();
    EXPECT_TRUE(fs::exists(box.copyOf(box.snapshots().back(), volume) + "/sub/f"));
    EXPECT_EQ(snapshots.list().size(), 1U);
    EXPECT_EQ(LocalSnapshots(volume + "/sub").list().size(), 1U);
    EXPECT_EQ(notes(), "");
    // Inside a source and no source itself, a subvolume is left out, and said to be: read in a snapshot as in
    // place.
    for (const std::string& disk : {box.destination(), volume + "/backups"}) {
        ASSERT_EQ(box.tmutil({"setdestination", disk}).exitCode, 0);
        useSources({volume});
        backUp();
        EXPECT_EQ(notes(), "left out: " + volume +
                               "/sub is a subvolume of its own, which can be added to the folders to back "
                               "up\n");
        EXPECT_TRUE(fs::is_empty(box.copyOf(box.snapshots().back(), volume) + "/sub"));
    }
    ASSERT_EQ(box.tmutil({"addexclusion", volume + "/sub"}).exitCode, 0);
    backUp();
    EXPECT_EQ(notes(), "");
}

TEST_F(LocalSnapshotsOnBtrfs, GoAfterADayOrWhenTheRoomIsShort) {
    std::vector<std::string> notes;
    const std::string token = makeSnapshot();
    const auto hour = std::chrono::hours(1);
    removeLocalSnapshotsForRoom(snapshots, notes);
    removeExpiredLocalSnapshots(snapshots, wallClock() + 23 * hour, notes);
    EXPECT_EQ(snapshots.list().size(), 1U);
    {
        const auto held = snapshots.hold(token);
        removeExpiredLocalSnapshots(snapshots, wallClock() + 25 * hour, notes);
        EXPECT_EQ(notes.size(), 1U);
        EXPECT_EQ(snapshots.list().size(), 1U);
    }
    removeExpiredLocalSnapshots(snapshots, wallClock() + 25 * hour, notes);
    EXPECT_TRUE(snapshots.list().empty());
    EXPECT_EQ(notes.size(), 1U);

    (void)makeSnapshot();
    (void)box.run({"sh", "-c", "while fallocate -l 40M " + volume + "/filler$((i = i + 1)); do :; done"});
    removeLocalSnapshotsForRoom(snapshots, notes);
    EXPECT_TRUE(snapshots.list().empty());
}

TEST_F(LocalSnapshotsOnBtrfs, AreOfOrdinaryUsersOnlyIfTheyMayRemoveThem) {
    box.becomeOrdinaryUser();
    expectRefusal({"localsnapshot"}, "user_subvol_rm_allowed");
    backUp();
    EXPECT_EQ(notes(), "");
    EXPECT_FALSE(fs::exists(snapshots.folder()));
    ASSERT_EQ(box.run({"mount", "-o", "remount,user_subvol_rm_allowed", volume}).exitCode, 0);
    (void)makeSnapshot();
    backUp();
    const std::string both = listed("/");
    EXPECT_EQ(std::count(both.begin(), both.end(), '\n'), 2) << both;
    EXPECT_EQ(box.tmutil({"deletelocalsnapshots", "/"}).exitCode, 0);
    EXPECT_EQ(listed("/"), "");
    EXPECT_EQ(box.snapshots().size(), 2U);
    // Root may not take over what belongs to somebody else.
    ASSERT_TRUE(fs::exists(snapshots.folder()));
    EXPECT_NE(snapshots.make(wallClock()).failure().text.find("another user"), std::string::npos);
}

} // namespace

} // namespace norvane
