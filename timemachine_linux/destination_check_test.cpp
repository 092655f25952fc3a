#include "timemachine_linux/destination_check.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "timemachine_linux/backup_place.h"
#include "timemachine_linux/backup_sandbox.h"
#include "timemachine_linux/destination.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using Problem = DestinationProblem;
using Remark = DestinationRemark;

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
        {"line feed", [](auto& f) { f.path = "/a\nb"; }, Problem::strangeName, "/a\\#012b: "},
        {"bytes", [](auto& f) { f.path = "/a\xff"; }, Problem::strangeName, "/a\\#377: "},
        {"space at the end", [](auto& f) { f.path = "/a "; }, Problem::strangeName, "space"},
        {"source", [](auto& f) { f.sources = {f.path}; }, Problem::isASource, "itself backed up"},
        {"backup", [](auto& f) { f.backup = "/d/h/s"; }, Problem::insideBackup, "the backup /d/h/s"},
        {"read-only", [](auto& f) { f.writeError = EROFS; }, Problem::readOnly, "read-only"},
        {"full", [](auto& f) { f.writeError = ENOSPC; }, Problem::notWritable, "No space"},
        {"forbidden", [](auto& f) { f.writeError = EPERM; }, Problem::notWritable, "cannot write"},
        {"vfat", [](auto& f) { f.linkError = EPERM; }, Problem::noHardLinks, "hard links (ext4)"},
        {"fuse", [](auto& f) { f.linkError = ENOSYS; }, Problem::noHardLinks, "hard links"},
        {"failing", [](auto& f) { f.linkError = EIO; }, Problem::notWritable, "error"},
    };
    for (const Case& c : cases) {
        DestinationFacts facts = goodFacts();
        c.change(facts);
        const DestinationVerdict verdict = judgeDestination(facts);
        EXPECT_EQ(verdict.problem, c.problem) << c.what;
        EXPECT_NE(verdict.explanation.find(c.text), std::string::npos) << c.what << verdict.explanation;
        EXPECT_EQ(verdict.explanation.empty(), verdict.usable()) << c.what;
    }
    DestinationFacts facts = goodFacts();
    facts.sources = {"/data", "/home/u"};
    facts.sourcesOnSameDisk = {"/home/u"};
    facts.abilities = {false, false, true};
    std::vector<Remark> kinds;
    for (const auto& remark : judgeDestination(facts).remarks)
        kinds.push_back(remark.kind);
    EXPECT_EQ(kinds, (std::vector{Remark::insideSource, Remark::sameDisk, Remark::noAccessControlLists,
                                  Remark::noExtendedAttributes}));
}

TEST(DestinationFacts, AreThoseOfRealFileSystems) {
    const BackupSandbox box;
    const std::string folder = box.destination();
    const auto problemOf = [&] { return judgeDestination(examineDestination(folder, {box.tree()})); };
    const auto onSameDisk = problemOf();
    EXPECT_EQ(onSameDisk.explanation, "");
    ASSERT_FALSE(onSameDisk.remarks.empty());
    EXPECT_EQ(onSameDisk.remarks.front().kind, Remark::sameDisk);
    EXPECT_TRUE(fs::is_empty(folder)) << "a probe is left";

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
        const DestinationVerdict verdict = problemOf();
        EXPECT_EQ(verdict.problem, c.problem) << c.type << " " << c.options << verdict.explanation;
        EXPECT_TRUE(verdict.remarks.empty()) << c.type;
        const ToolResult result = box.tmutil({"setdestination", folder});
        EXPECT_EQ(result.exitCode, c.problem == Problem::none ? 0 : 1) << c.type;
        if (c.problem != Problem::none) {
            EXPECT_EQ(result.errors, "tmutil: " + verdict.explanation + "\n");
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
