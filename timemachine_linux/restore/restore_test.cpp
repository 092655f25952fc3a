#include "timemachine_linux/restore/restore.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <thread>

#include "platform/linux/files/small_file.h"
#include "tests/support/tmutil_fixture.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

class Restore : public Tmutil {
protected:
    void SetUp() override { makeOddTree(); }

    void makeBackup() {
        useDestination();
        backUp();
        copy = box.copyOf(box.snapshots().back(), tree);
    }

    [[nodiscard]] static std::vector<std::string> namesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    const std::string tree = box.tree();
    std::string copy;
};

TEST_F(Restore, BringsBackAllThatABackupKeeps) {
    box.becomeOrdinaryUser();
    makeBackup();
    const auto before = fingerprint(box.snapshots().back());
    fs::rename(tree + "/dir", box.in("original"));
    ASSERT_EQ(box.tmutil({"restore", copy + "/dir/", tree}).output, "");
    EXPECT_EQ(differences(box, box.in("original"), tree + "/dir"), "");
    EXPECT_EQ(statOf(tree + "/dir/plain").st_nlink, 2U)
        << "linked into the backup, or not with its other name";

    // Several at once, links and odd names among them; one under another name.
    fs::create_directories(box.home() + "/out");
    const std::string out = box.home() + "/out";
    box.becomeOrdinaryUser();
    const ToolResult several =
        box.tmutil({"restore", "-v", copy + "/dir/dangling", copy + "/dir/sub/-rf", copy + "/dir/sub/a:b",
                    copy + "/dir/sub/new\nline", copy + "/dir/sub/\xff\"quoted'", out});
    EXPECT_EQ(several.exitCode, 0) << several.errors;
    EXPECT_EQ(namesIn(out),
              (std::vector<std::string>{"-rf", "a:b", "dangling", "new\nline", "\xff\"quoted'"}));
    EXPECT_EQ(fs::read_symlink(out + "/dangling"), "nowhere");
    EXPECT_EQ(box.tmutil({"restore", copy + "/dir/sub", out + "/sub again"}).exitCode, 0);
    EXPECT_EQ(differences(box, copy + "/dir/sub", out + "/sub again"), "");
    EXPECT_EQ(fingerprint(box.snapshots().back()), before);
}

TEST_F(Restore, OverwritesNothingAndStaysOutOfBackups) {
    makeBackup();
    const std::string dir = copy + "/dir";
    const std::string plain = dir + "/plain";
    writeFile(tree + "/dir/plain", "newer");
    struct Case {
        std::vector<std::string> arguments;
        const char* errors;
    };
    const Case cases[] = {
        {{plain, tree + "/dir"}, "is there already"},
        {{plain, tree + "/dir/plain"}, "is there already"},
        {{dir, tree}, "is there already"},
        {{plain, dir + "/plain", box.home()}, "restored twice"},
        {{plain, dir + "/sub", box.home() + "/new"}, "is not a folder"},
        {{plain, box.home() + "/new/"}, "is not a folder"},
        {{plain, box.home() + "/no/new"}, "No such file"},
        {{copy + "/gone", box.home()}, "No such file"},
        {{tree + "/dir/plain", box.home()}, "is not in a backup"},
        {{plain, copy + "/new"}, "must not change"},
        {{plain, box.snapshots().back()}, "must not change"},
    };
    for (Case c : cases) {
        c.arguments.insert(c.arguments.begin(), "restore");
        expectRefusal(c.arguments, c.errors);
    }
    EXPECT_EQ(box.tmutil({"restore", plain}).exitCode, 64);
    EXPECT_EQ(readSmallFile(tree + "/dir/plain"), "newer");
    EXPECT_EQ(namesIn(box.home()), (std::vector<std::string>{".config", ".local", "tree"}));
}

TEST_F(Restore, TellsWhatCouldNotBeRead) {
    box.becomeOrdinaryUser();
    makeBackup();
    ::chmod((copy + "/dir/sub/-rf").c_str(), 0);
    expectRefusal({"restore", copy + "/dir", box.home() + "/back"}, "-rf");
    EXPECT_TRUE(fs::exists(box.home() + "/back/plain"));
    EXPECT_FALSE(fs::exists(box.home() + "/back/sub/-rf"));
}

TEST_F(Restore, NothingComesFromABackupThatIsBeingRemoved) {
    makeBackup();
    // As thinning does it: first the name goes, then what is in it.
    const std::string snapshot = box.snapshots().back();
    box.putProgram("rsync", "mv '" + snapshot + "' '" + snapshot + ".inProgress'\nrm -r '" + snapshot +
                                ".inProgress" + tree + "/dir/sub'\nmkdir '" + snapshot +
                                "'\nfor last; do :; done\necho part >\"$last/plain\"");
    expectRefusal({"restore", copy + "/dir/plain", box.home() + "/back"},
                  "tmutil: The backup " + snapshot +
                      " was removed while it was restored from. Nothing is restored.\n");
    EXPECT_EQ(namesIn(box.home()), (std::vector<std::string>{".config", ".local", "tree"}));
}

TEST_F(Restore, KilledOrStoppedShowsNoHalfOfIt) {
    for (int i = 0; i < 500; ++i)
        writeFile(tree + "/dir/f" + std::to_string(i), std::string(20000, 'x'));
    makeBackup();
    const auto whole = fingerprint(copy + "/dir");
    const std::string target = box.home() + "/back";
    for (int round = 0; round < 30; ++round) {
        PeerProcess restoring({NORVANE_LIBEXEC_DIR "/tmutil", "restore", copy + "/dir", target});
        std::this_thread::sleep_for(std::chrono::milliseconds(round * 5));
        ::kill(restoring.id(), round % 2 == 0 ? SIGKILL : SIGTERM);
        ASSERT_TRUE(restoring.waitForExit(60));
        if (fs::exists(target)) {
            EXPECT_EQ(fingerprint(target), whole);
            fs::remove_all(target);
        }
    }
    EXPECT_EQ(fingerprint(copy + "/dir"), whole);
}

} // namespace

} // namespace norvane
