#include "timemachine_linux/files/tree_removal.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/support/backup_sandbox.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

TEST(UnfinishedSnapshots, LoseSourcesThatAreGoneAndFilesThatOthersShare) {
    const BackupSandbox box;
    const std::string folder = box.in("disk/unfinished");
    for (const std::string path : {"/home/u/docs", "/home/u/other", "/home/u2", "/srv"}) {
        fs::create_directories(folder + path);
        writeFile(folder + path + "/f", "x");
        fs::permissions(folder + path, fs::perms::owner_read | fs::perms::owner_exec);
    }
    fs::create_directory_symlink(box.home(), folder + "/home/u2-link");
    fs::create_hard_link(folder + "/home/u/docs/f", box.in("disk/shared"));
    EXPECT_TRUE(removeAllBut(folder, {"/home/u/docs", "/home/u2"}));
    EXPECT_FALSE(fs::exists(folder + "/home/u/other"));
    EXPECT_FALSE(fs::exists(folder + "/srv"));
    EXPECT_TRUE(fs::exists(folder + "/home/u2/f"));
    EXPECT_TRUE(removeSharedFiles(folder));
    EXPECT_FALSE(fs::exists(folder + "/home/u/docs/f"));
    EXPECT_TRUE(fs::exists(folder + "/home/u2/f"));
    EXPECT_TRUE(fs::exists(box.in("disk/shared")));
    EXPECT_TRUE(removeTree(folder));
    EXPECT_TRUE(removeTree(folder));
    EXPECT_TRUE(fs::exists(box.tree())) << "a symbolic link was followed";
}

} // namespace

} // namespace norvane
