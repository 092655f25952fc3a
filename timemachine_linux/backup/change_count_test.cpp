#include "timemachine_linux/backup/change_count.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/backup_sandbox.h"
#include "timemachine_linux/rsync/rsync_command.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

std::int64_t statistic(const std::string& output, const std::string& label) {
    const std::size_t start = output.find(label);
    return start == std::string::npos ? -1 : std::stoll(output.substr(start + label.size()));
}

TEST(ChangeCount, FindsWhatRsyncWouldTransfer) {
    const BackupSandbox box;
    const std::string tree = box.tree();
    for (const std::string folder : {"/a/b", "/out", "/a/out*"})
        fs::create_directories(tree + folder);
    for (int i = 0; i < 20; ++i)
        writeFile(tree + "/a/b/f" + std::to_string(i), std::string(static_cast<std::size_t>(i) * 100, 'x'));
    for (const std::string file : {"/out/f", "/a/out*/f", "/a/skipped", "/a/out"})
        writeFile(tree + file, "12345");
    fs::create_hard_link(tree + "/a/b/f7", tree + "/a/linked");
    fs::create_symlink("/etc", tree + "/a/link");
    CopyJob job;
    job.place.sources = {tree};
    job.target = box.in("disk/1");
    job.filterFile = box.in("filter");
    const std::vector<std::string> excluded{tree + "/out", tree + "/a/out*", tree + "/a/skipped"};
    writeFile(job.filterFile, filterFileFor(job.place, excluded));
    fs::create_directory(job.target);
    const auto expectAgreement = [&](const std::string& base) {
        std::vector<std::string> command = rsyncArguments(job);
        command.insert(command.begin(), {"/usr/bin/rsync", "--dry-run", "--stats", "--no-A", "--no-X"});
        const std::string output = box.run(command).output;
        const ChangeTotals totals =
            countChanges({job.place.sources, excluded, {base}, true}, [] { return false; });
        EXPECT_EQ(totals.files, statistic(output, "regular files transferred: ")) << output;
        EXPECT_EQ(totals.bytes, statistic(output, "Total transferred file size: ")) << output;
        return totals.files;
    };
    EXPECT_EQ(expectAgreement(job.target), 21);
    std::vector<std::string> copy = rsyncArguments(job);
    copy.insert(copy.begin(), "/usr/bin/rsync");
    ASSERT_EQ(box.run(copy).exitCode, 0);
    job.previousSnapshot = job.target;
    job.target = box.in("disk/2");
    fs::create_directory(job.target);
    EXPECT_EQ(expectAgreement(*job.previousSnapshot), 0);
    const auto time = fs::last_write_time(tree + "/a/b/f3");
    writeFile(tree + "/a/b/f3", std::string(300, 'y')); // at the same size, within the same second
    fs::last_write_time(tree + "/a/b/f3", time + std::chrono::nanoseconds(1));
    fs::remove(tree + "/a/b/f4");
    ::chmod((tree + "/a/b/f5").c_str(), 0600);
    EXPECT_EQ(expectAgreement(*job.previousSnapshot), 1);
}

} // namespace

} // namespace norvane
