// For tests: tmutil as people and other programs run it.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "tests/support/backup_sandbox.h"

namespace norvane {

inline struct stat statOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

/// What rsync would still have to do to make the copy equal, attributes and content included.
inline std::string differences(const BackupSandbox& box, const std::string& original,
                               const std::string& copy) {
    const ToolResult result = box.run({"/usr/bin/rsync", "-naHAXci", "--modify-window=-1", "--delete",
                                       "--numeric-ids", original + "/", copy + "/"});
    return result.output + result.errors;
}

inline void writeMegabytes(const std::string& path, std::size_t count) {
    writeFile(path, std::string(count << 20, 'x'));
}

class Tmutil : public testing::Test {
protected:
    void useDestination() { ASSERT_EQ(box.tmutil({"setdestination", box.destination()}).exitCode, 0); }

    void backUp() {
        const ToolResult result = box.tmutil({"startbackup", "--block"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }

    /// Links, odd names, attributes and a sealed folder below "dir" of the tree.
    void makeOddTree() const {
        namespace fs = std::filesystem;
        const std::string dir = box.tree() + "/dir";
        fs::create_directories(dir + "/sub/empty");
        writeFile(dir + "/plain", "content");
        fs::create_hard_link(dir + "/plain", dir + "/second name");
        fs::create_symlink("nowhere", dir + "/dangling");
        for (const std::string name :
             {"new\nline", "\xff\"quoted'", "-rf", "a:b", "*", "we[ir]d*?", "back\\slash"})
            writeFile(fs::path(dir + "/sub") / name, name);
        ::setxattr((dir + "/plain").c_str(), "user.note", "abc", 3, 0);
        (void)box.run({"setfacl", "-m", "u:12345:r", dir + "/sub/a:b"});
        ::chmod((dir + "/sub").c_str(), 0555);
    }

    void useSources(const std::vector<std::string>& folders) {
        PropertyList::Array list;
        for (const std::string& folder : folders)
            list.push_back({PropertyListData{folder}});
        box.preferences.set("SourceFolders", {list});
    }

    /// What the last backup noted, a line each.
    [[nodiscard]] std::string notes() const {
        std::string text;
        const PropertyList messages = box.recorded("MessageParameters");
        for (const PropertyList& note : *messages.array())
            text += *note.string() + "\n";
        return text;
    }

    /// Runs the verb, which fails with these words.
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& words,
                       int exitCode = 1) const {
        const ToolResult result = box.tmutil(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << words;
        EXPECT_NE(result.errors.find(words), std::string::npos) << words << ": " << result.errors;
    }

    /// A backup that takes many seconds, stopped in the middle of its copy.
    void startSlowBackup() {
        for (int i = 0; i < 50; ++i)
            writeFile(box.tree() + "/a" + std::to_string(i), "small");
        writeMegabytes(box.tree() + "/big", 40);
        box.slowDownRsync(2000);
        ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return box.status("BackupPhase") == "Copying"; }));
    }

    /// The path that the file of the tree has in the unfinished snapshot, once it is there.
    std::string waitForCopyOf(const std::string& name) const {
        std::string copy;
        EXPECT_TRUE(eventually([&] {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(box.destination()))
                if (entry.path().extension() == ".inProgress")
                    copy = entry.path().string() + box.tree() + "/" + name;
            return std::filesystem::exists(std::filesystem::symlink_status(copy));
        })) << name;
        return copy;
    }

    void stopBackup() {
        EXPECT_EQ(box.tmutil({"stopbackup"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    }

    BackupSandbox box;
};

} // namespace norvane
