#include "platform/linux/files/kept_user_defaults.h"
#include "platform/linux/files/user_defaults_file.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"
#include "tests/support/test_peers.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class UserDefaultsFileTest : public testing::Test {
protected:
    static void write(const std::string& path, const std::string& content) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    [[nodiscard]] std::vector<std::string> filesBeside() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(fs::path(path_).parent_path()))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    const ScratchFolder folder_;
    const std::string path_ = folder_.path("sub/domain.plist");
};

PropertyList integer(std::int64_t value) { return {value}; }

TEST_F(UserDefaultsFileTest, StoresEveryTypeForOthersToSeeAtOnce) {
    UserDefaultsFile writer(path_);
    const UserDefaultsFile reader(path_);
    EXPECT_EQ(reader.all(), std::nullopt);
    const PropertyList::Dictionary values = {{"text", {"ä\r\n"s}},
                                             {"date", {Instant(std::chrono::microseconds(-250'001))}},
                                             {"data", {PropertyListData{"\0\xFF"s}}},
                                             {"flag", {true}},
                                             {"number", integer(-3)}};
    for (const auto& [key, value] : values) {
        writer.set(key, value);
        EXPECT_EQ(reader.object(key), value) << key;
    }
    EXPECT_EQ(reader.all(), values);
    writer.remove("flag");
    EXPECT_EQ(reader.object("flag"), std::nullopt);
    EXPECT_EQ(reader.integer("number"), -3);

    EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder_.path("sub")).permissions(), fs::perms::owner_all);
    EXPECT_EQ(filesBeside(), (std::vector<std::string>{"domain.plist", "domain.plist.lock"}));
}

TEST_F(UserDefaultsFileTest, SeesAWriteAfterALongQuietTime) {
    UserDefaultsFile writer(path_);
    const UserDefaultsFile reader(path_);
    writer.set("a", integer(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(60)); // from here on what was read is kept
    EXPECT_EQ(reader.integer("a"), 1);
    writer.set("a", integer(2));
    EXPECT_EQ(reader.integer("a"), 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(reader.integer("a"), 2);
    fs::remove(path_);
    EXPECT_EQ(reader.all(), std::nullopt);
}

TEST_F(UserDefaultsFileTest, SeesQuickWritesOfTheSameSizeInPlace) {
    const UserDefaultsFile reader(path_);
    for (int round = 0; round < 2000; ++round) {
        const std::string digit = std::to_string(round % 10);
        write(path_, "{ a = " + digit + "; }");
        ASSERT_EQ(reader.object("a"), PropertyList{digit}) << round;
    }
}

TEST_F(UserDefaultsFileTest, LeavesTheFileToItsOwner) {
    write(path_, "{ a = 1; }");
    fs::permissions(path_, fs::perms(0640));
    const uid_t owner = ::geteuid() == 0 ? 12345 : ::geteuid();
    const std::string folder = fs::path(path_).parent_path();
    for (const std::string& path : {folder, path_})
        ASSERT_EQ(::chown(path.c_str(), owner, static_cast<gid_t>(-1)), 0);
    UserDefaultsFile(path_).set("a", {std::int64_t{2}});
    for (const std::string& path : {path_, path_ + ".lock"}) {
        struct stat status {};
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, owner) << path;
        EXPECT_EQ(status.st_mode & 0777U, path == path_ ? 0640U : 0600U) << path;
    }
}

TEST_F(UserDefaultsFileTest, KeepsAnUnreadableFileAside) {
    for (const std::string content : {"", "garbage = ", "(a)", "<plist><dict><key>a</key>"}) {
        write(path_, content);
        UserDefaultsFile store(path_);
        EXPECT_EQ(store.all(), std::nullopt);
        EXPECT_EQ(store.object("a"), std::nullopt);
        store.remove("a");
        EXPECT_EQ(readSmallFile(path_), content);
        store.set("a", integer(1));
        EXPECT_EQ(store.integer("a"), 1);
        EXPECT_EQ(readSmallFile(path_ + ".unreadable"), content);
    }
}

TEST_F(UserDefaultsFileTest, RefusesValuesThatWouldSpoilTheFile) {
    UserDefaultsFile store(path_);
    store.set("kept", integer(1));
    PropertyList nested = integer(1);
    for (int depth = 0; depth < maxPropertyListDepth; ++depth)
        nested = {PropertyList::Array{std::move(nested)}};
    store.set("bad", {"\xFF"s});
    store.set("bad", nested);
    store.set("\xFF", integer(1));
    EXPECT_EQ(store.all(), (PropertyList::Dictionary{{"kept", integer(1)}}));
}

TEST_F(UserDefaultsFileTest, SurvivesWhatStandsInItsWay) {
    UserDefaultsFile store(path_);
    write(path_ + ".new", "left by a killed writer");
    EXPECT_TRUE(store.update([](auto& entries) { entries["a"] = integer(1); }));
    EXPECT_FALSE(fs::exists(path_ + ".new"));

    // A folder in the place of the new file, the lock or the settings: nothing can be stored, nothing
    // changes.
    for (const std::string& obstacle : {path_ + ".new/x", path_ + ".lock/x"}) {
        fs::remove_all(fs::path(obstacle).parent_path());
        fs::create_directories(obstacle);
        EXPECT_FALSE(store.update([](auto& entries) { entries["a"] = integer(2); })) << obstacle;
        EXPECT_EQ(store.integer("a"), 1);
        fs::remove_all(fs::path(obstacle).parent_path());
    }
    for (const std::string& path :
         {folder_.path("sub"), "/proc/none/domain.plist"s, "/dev/null"s, path_ + "/x"}) {
        UserDefaultsFile nowhere(path);
        EXPECT_FALSE(nowhere.update([](auto& entries) { entries["a"] = integer(2); })) << path;
        EXPECT_EQ(nowhere.all(), std::nullopt);
    }
    const std::string pipe = folder_.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(UserDefaultsFile(pipe).all(), std::nullopt);
}

TEST_F(UserDefaultsFileTest, WhatCannotBeStoredIsKeptInMemory) {
    UserDefaultsFile(path_).set("a", integer(1));
    UserDefaultsFile(path_).set("b", integer(1));
    fs::create_directories(path_ + ".new/x"); // in the way of the new file
    int refusals = 0;
    KeptUserDefaults kept(path_, [&] { ++refusals; });
    kept.set("a", integer(2));
    kept.remove("b");
    EXPECT_EQ(kept.integer("a"), 2);
    EXPECT_EQ(kept.object("b"), std::nullopt);
    EXPECT_EQ(UserDefaultsFile(path_).integer("a"), 1);
    EXPECT_EQ(refusals, 1);
    fs::remove_all(path_ + ".new");
    kept.set("c", integer(3));
    EXPECT_EQ(UserDefaultsFile(path_).all(),
              (PropertyList::Dictionary{{"a", integer(2)}, {"c", integer(3)}}));
    UserDefaultsFile(path_).set("a", integer(4));
    EXPECT_EQ(kept.integer("a"), 4) << "others are heard again";
    kept.set("bad", {"\xFF"s});
    kept.set("a", integer(5));
    EXPECT_EQ(UserDefaultsFile(path_).integer("a"), 5) << "one bad value keeps no other";
    EXPECT_EQ(kept.object("bad"), (PropertyList{"\xFF"s}));
}

TEST_F(UserDefaultsFileTest, WritesThroughASymbolicLink) {
    const std::string link = folder_.path("link.plist");
    UserDefaultsFile(path_).set("a", integer(1));
    fs::create_symlink(path_, link);
    UserDefaultsFile(link).set("a", integer(2));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(UserDefaultsFile(path_).integer("a"), 2);
}

TEST_F(UserDefaultsFileTest, LosesNoWriteAmongThreads) {
    constexpr int rounds = 25;
    UserDefaultsFile shared(path_);
    std::atomic<bool> done = false;
    std::thread reader([&] {
        std::int64_t last = 0;
        while (!done) {
            const std::int64_t now = shared.integer("sum");
            EXPECT_GE(now, last);
            last = now;
        }
    });
    std::vector<std::thread> writers(4);
    for (std::size_t writer = 0; writer < writers.size(); ++writer) {
        writers[writer] = std::thread([&, own = writer % 2 == 0] {
            UserDefaultsFile separate(path_);
            UserDefaultsFile& store = own ? separate : shared;
            for (int round = 0; round < rounds; ++round)
                EXPECT_TRUE(store.update([](auto& entries) {
                    entries["sum"] = integer(entries["sum"].exactInteger().value_or(0) + 1);
                }));
        });
    }
    for (auto& writer : writers)
        writer.join();
    done = true;
    reader.join();
    EXPECT_EQ(shared.integer("sum"), 4 * rounds);
}

TEST(UserFolders, FollowTheBaseDirectories) {
    ::setenv("HOME", "/home/someone", 1);
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    ::setenv("XDG_STATE_HOME", "/state", 1);
    EXPECT_EQ(preferencesFile("a.b"), "/home/someone/.config/norvane/a.b.plist");
    EXPECT_EQ(libraryFolder(), "/state/norvane");
    ::unsetenv("HOME");
    EXPECT_EQ(homeFolder().front(), '/');
}

} // namespace
} // namespace norvane
