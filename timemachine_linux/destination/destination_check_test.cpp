#include "timemachine_linux/destination/destination_check.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/linux/files/mount_table.h"
#include "tests/support/backup_sandbox.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/destination/snapshot_holding.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using Problem = DestinationProblem;

DestinationFacts goodFacts() {
    DestinationFacts facts;
    facts.path = "/home/u/backups";
    facts.isFolder = true;
    facts.fileSystem = "ext4";
    return facts;
}

TEST(DestinationVerdict, FollowsFromTheFacts) {
    struct Case {
        const char* what;
        void (*change)(DestinationFacts&);
        Problem problem;
        const char* text;
    };
    const Case cases[] = {
        {"good", [](DestinationFacts&) {}, Problem::none, ""},
        {"gone", [](auto& f) { f.accessError = ENOENT; }, Problem::missing, "No such file"},
        {"file", [](auto& f) { f.isFolder = false; }, Problem::notAFolder, "not a folder"},
        {"root", [](auto& f) { f.path = "/"; }, Problem::rootFolder, "root folder"},
        {"quotes", [](auto& f) { f.path = "/a \"b\" 'c'"; }, Problem::none, ""},
        {"line feed", [](auto& f) { f.path = "/a\nb"; }, Problem::unprintable, "/a\\#012b: "},
        {"bytes", [](auto& f) { f.path = "/a\xff"; }, Problem::unprintable, "/a\\#377: "},
        {"space at the end", [](auto& f) { f.path = "/a "; }, Problem::unprintable, "space"},
        {"wide space", [](auto& f) { f.path = "/a\u3000"; }, Problem::unprintable, "space"},
        {"source", [](auto& f) { f.sources = {f.path}; }, Problem::isSource, "itself backed up"},
        {"backup", [](auto& f) { f.backup = "/d/h/s"; }, Problem::insideBackup, "the backup /d/h/s"},
        {"read-only", [](auto& f) { f.writeError = EROFS; }, Problem::readOnly, "read-only"},
        {"full", [](auto& f) { f.writeError = ENOSPC; }, Problem::notWritable, "No space"},
        {"forbidden", [](auto& f) { f.writeError = EPERM; }, Problem::notWritable, "cannot write"},
        {"vfat", [](auto& f) { f.linkError = EPERM; }, Problem::noHardLinks, "hard links (ext4)"},
        {"exfat, looked at", [](auto& f) { f.fileSystem = "exfat"; }, Problem::noHardLinks, "hard links"},
        {"unknown file system", [](auto& f) { f.fileSystem = ""; }, Problem::none, ""},
        {"fuse", [](auto& f) { f.linkError = ENOSYS; }, Problem::noHardLinks, "hard links"},
        {"failing", [](auto& f) { f.linkError = EIO; }, Problem::notWritable, "error"},
    };
    for (const Case& c : cases) {
        DestinationFacts facts = goodFacts();
        c.change(facts);
        EXPECT_EQ(judgeDestination(facts).problem, c.problem) << c.what;
        const std::string line = problemLine(facts);
        EXPECT_NE(line.find(c.text), std::string::npos) << c.what << line;
        EXPECT_EQ(line.empty(), c.problem == Problem::none) << c.what;
    }
}

TEST(DestinationVerdict, TellsWhatItsOwnerShouldKnow) {
    struct Case {
        const char* path;
        std::vector<std::string> otherPaths;
        std::vector<std::string> sourcesOnSameDisk;
        DestinationVerdict verdict;
    };
    for (const Case& c :
         {Case{"/mnt/disk", {}, {}, {Problem::none, "ext4", "", ""}},
          {"/home/annabel", {}, {"/home/anna"}, {Problem::none, "ext4", "", "/home/anna"}},
          {"/home/anna/x", {}, {"/home/anna"}, {Problem::none, "ext4", "/home/anna", "/home/anna"}},
          {"/mnt/x", {"/srv/data/x"}, {}, {Problem::none, "ext4", "/srv/data", ""}},
          {"/home/anna", {}, {"/home/anna"}, {Problem::isSource, "ext4", "", ""}},
          {"/mnt", {"/home/anna"}, {"/home/anna"}, {Problem::isSource, "ext4", "", ""}},
          {"/home", {}, {"/home/anna"}, {Problem::none, "ext4", "", "/home/anna"}}}) {
        DestinationFacts facts = goodFacts();
        facts.path = c.path;
        facts.otherPaths = c.otherPaths;
        facts.sources = {"/home/anna", "/srv/data"};
        facts.sourcesOnSameDisk = c.sourcesOnSameDisk;
        EXPECT_EQ(judgeDestination(facts), c.verdict) << c.path;
        const auto remarks = static_cast<std::ptrdiff_t>(remarkLines(facts).size());
        EXPECT_EQ(remarks, !c.verdict.insideSource.empty() + !c.verdict.sharesDiskWith.empty()) << c.path;
    }
    DestinationFacts facts = goodFacts();
    facts.abilities = {false, false, true};
    EXPECT_EQ(remarkLines(facts).size(), 2U);
}

TEST(DestinationFacts, AreThoseOfRealFileSystems) {
    const BackupSandbox box;
    const std::string folder = box.destination();
    const auto examined = [&](Examination how) { return examineDestination(folder, {box.tree()}, how); };
    for (const auto how : {Examination::byLooking, Examination::byWriting}) {
        const DestinationFacts facts = examined(how);
        EXPECT_EQ(problemLine(facts), "");
        EXPECT_EQ(judgeDestination(facts).sharesDiskWith, box.tree());
        EXPECT_TRUE(fs::is_empty(folder)) << "a probe is left";
    }
    EXPECT_EQ(judgeDestination(examineDestination("/proc/self/exe", {}, Examination::byLooking)).problem,
              Problem::notAFolder);

    struct Case {
        const char* type;
        const char* options;
        Problem problem;
    };
    const Case cases[] = {
        {"ext4", "rw", Problem::none},        {"ext4", "ro", Problem::readOnly},
        {"vfat", "rw", Problem::noHardLinks}, {"exfat", "rw", Problem::noHardLinks},
        {"btrfs", "rw", Problem::none},
    };
    for (const Case& c : cases) {
        const MountedImage image(box, c.type, folder, c.options);
        if (!image.mounted()) {
            std::printf("%s cannot be mounted here and was not tried\n", c.type);
            continue;
        }
        const DestinationFacts facts = examined(Examination::byWriting);
        EXPECT_EQ(judgeDestination(facts).problem, c.problem) << c.type << " " << c.options;
        if (!mayNeverAnswer(facts.fileSystem)) { // as exFAT where a process serves it
            EXPECT_EQ(judgeDestination(examined(Examination::byLooking)).problem, c.problem) << c.type;
        }
        EXPECT_TRUE(remarkLines(facts).empty()) << c.type;
        const ToolResult result = box.tmutil({"setdestination", folder});
        EXPECT_EQ(result.exitCode, c.problem == Problem::none ? 0 : 1) << c.type;
        if (c.problem != Problem::none) {
            EXPECT_EQ(result.errors, "tmutil: " + problemLine(facts) + "\n");
        }
        EXPECT_EQ(fs::exists(folder + "/" + destinationMarkerName), c.problem == Problem::none);
    }
}

TEST(SnapshotHolding, KnowsWholeSnapshotsOnly) {
    const BackupSandbox box;
    const std::string disk = box.destination();
    writeFile(disk + "/" + destinationMarkerName, "id");
    const std::string snapshot = disk + "/host/2024-05-01-101500";
    const std::string local =
        box.in("volume/.norvane-snapshots/com.apple.TimeMachine.2024-05-01-101500.local");
    const std::pair<std::string, std::string> cases[] = {
        {snapshot, snapshot},
        {snapshot + "/home/u/file", snapshot},
        {snapshot + ".inProgress/home", ""},
        {disk + "/host", ""},
        {disk + "/a/b/2024-05-01-101500", ""},
        {box.in("elsewhere/host/2024-05-01-101500"), ""},
        {local + "/u", local},
        {box.in("com.apple.TimeMachine.2024-05-01-101500.local"), ""},
        {box.in(".norvane-snapshots/com.apple.TimeMachine.2024-13-01-101500.local"), ""},
        {"/", ""},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(snapshotHolding(path).value_or(""), expected) << path;
}

} // namespace

} // namespace norvane
