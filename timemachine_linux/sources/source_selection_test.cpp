#include "timemachine_linux/sources/source_selection.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "platform/linux/files/mount_table.h"
#include "tests/support/backup_sandbox.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

TEST(SourceSelection, TakesFoldersOnceAndOnlyThoseNotExcluded) {
    BackupSandbox box;
    const UserPlaces places = userPlaces();
    const std::string home = places.home;
    fs::create_directories(home + "/a/inner");
    fs::create_directories(home + "/b/out");
    fs::create_directory_symlink(home + "/a", home + "/alias");
    struct Case {
        Paths configured;
        Paths sources;
        std::size_t missing;
    };
    const Case cases[] = {
        {{"~"}, {home}, 0},
        {{"~/a", "~/b/"}, {home + "/a", home + "/b"}, 0},
        {{"~/alias", "~/a", "~/a/inner"}, {home + "/a"}, 0},
        {{"~/nothing", "~/b", "relative"}, {home + "/b"}, 1},
        {{"~/b/out", "~/.cache"}, {}, 1},
        {{}, {}, 0},
    };
    ASSERT_FALSE(addExclusion(box.preferences, home + "/b/out", home));
    for (const Case& c : cases) {
        PropertyList::Array configured;
        for (const std::string& path : c.configured)
            configured.push_back({path});
        box.preferences.set("SourceFolders", {configured});
        const SourceSelection selection = selectSources(box.preferences, places, home + "/a/backups");
        const std::string hint = c.configured.empty() ? "none" : c.configured.front();
        EXPECT_EQ(selection.sources, c.sources) << hint;
        EXPECT_EQ(selection.missing.size(), c.missing) << hint;
    }
    box.preferences.remove("SourceFolders");
    EXPECT_EQ(selectSources(box.preferences, places, "").sources, Paths{home});
    // A destination around a source must not swallow it.
    box.preferences.set("SourceFolders", {PropertyList::Array{{home + "/a"}}});
    EXPECT_EQ(selectSources(box.preferences, places, home).sources, Paths{home + "/a"});
    const std::string backup = home + "/" + hostFolderName() + "/2024-05-01-101500";
    fs::create_directories(backup);
    box.preferences.set("SourceFolders", {PropertyList::Array{{home + "/a"}, {backup}}});
    EXPECT_EQ(selectSources(box.preferences, places, home).sources, Paths{home + "/a"});
    EXPECT_EQ(selectSources(box.preferences, places, home).inBackups, Paths{backup});
    EXPECT_FALSE(isWithin("/home/user2", "/home/user"));
}

} // namespace

} // namespace norvane
