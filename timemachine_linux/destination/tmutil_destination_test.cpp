// Setting the destination, and telling of it.
#include <filesystem>

#include "tests/support/tmutil_fixture.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/session/result_code.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

TEST_F(Tmutil, DestinationIsKnownByItsMarker) {
    useDestination();
    const auto destination = configuredDestination(box.preferences);
    ASSERT_TRUE(destination);
    const std::string heading = "> ==================================================\nName          : disk\n"
                                "Kind          : Local\n";
    const std::string mountPoint = "Mount Point   : " + box.destination() + "\n";
    const std::string id = "ID            : " + destination->id + "\n";
    EXPECT_EQ(box.tmutil({"destinationinfo"}).output, heading + mountPoint + id);

    // As after the disk went away and left its mount point.
    fs::rename(box.destination() + "/" + destinationMarkerName, box.in("marker"));
    EXPECT_EQ(box.tmutil({"destinationinfo"}).output, heading + id);
    expectRefusal({"startbackup"}, "not available");
    EXPECT_EQ(box.recordedResult(), ResultCode::destinationUnavailable);
    EXPECT_TRUE(fs::is_empty(box.destination()));
    writeFile(box.destination() + "/" + destinationMarkerName, "another disk in its place");
    EXPECT_EQ(box.tmutil({"destinationinfo"}).output, heading + id);

    // The same folder again is the same destination, with its history.
    fs::rename(box.in("marker"), box.destination() + "/" + destinationMarkerName);
    useDestination();
    EXPECT_EQ(configuredDestination(box.preferences)->id, destination->id);
    EXPECT_EQ(box.recordedResult(), ResultCode::destinationUnavailable);
    EXPECT_EQ(box.tmutil({"removedestination"}).exitCode, 0);
    EXPECT_FALSE(configuredDestination(box.preferences));
}

TEST_F(Tmutil, DestinationInfoTellsTheUrlOfFileServersOnly) {
    useDestination();
    const std::pair<std::string, bool> cases[] = {
        {"smb://nas/share", true},       {"afp://nas/share", true},   {"nfs://server/export", false},
        {"sftp://me@host/share", false}, {"https://host/dav", false}, {"smbx://nas/share", false},
    };
    for (const auto& [url, told] : cases) {
        box.preferences.update([&, &url = url](PropertyList::Dictionary& all) {
            PropertyList::Dictionary entry = *all["Destinations"].array()->front().dictionary();
            entry["NetworkURL"] = {url};
            all["Destinations"] = {PropertyList::Array{{std::move(entry)}}};
        });
        const std::string output = box.tmutil({"destinationinfo"}).output;
        EXPECT_EQ(output.find("\nURL           : " + url + "\n") != std::string::npos, told) << url;
        EXPECT_EQ(output.find("URL") != std::string::npos, told) << url;
    }
}

TEST_F(Tmutil, DestinationInsideASourceIsNotBackedUp) {
    const std::string inside = box.tree() + "/back \"ups'";
    fs::create_directories(inside);
    writeFile(box.tree() + "/f", "x");
    const ToolResult result = box.tmutil({"setdestination", inside});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("It is itself left out"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("on the same disk"), std::string::npos) << result.output;
    EXPECT_NE(box.tmutil({"destinationinfo"}).output.find("Mount Point   : " + inside + "\n"),
              std::string::npos);
    backUp();
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(box.tmutil({"startbackup"}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return box.status("DestinationMountPoint") == inside; }));
    ASSERT_TRUE(eventually([&] { return box.status("Running") == "0"; }));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << "a watcher misses it";
    ASSERT_EQ(box.snapshots().size(), 2U);
    const auto isLeftOut = [&] {
        const std::string copy = box.copyOf(box.snapshots().back(), box.tree());
        EXPECT_TRUE(fs::exists(copy + "/f"));
        EXPECT_FALSE(fs::exists(copy + "/back \"ups'"));
    };
    isLeftOut();
    // By another way in, it is the same folder.
    const std::string way = box.in("way");
    fs::create_directories(way);
    if (box.run({"mount", "--bind", box.tree(), way}).exitCode != 0)
        GTEST_SKIP() << "needs root";
    EXPECT_EQ(box.tmutil({"setdestination", way + "/back \"ups'"}).exitCode, 0);
    backUp();
    isLeftOut();
    expectRefusal({"setdestination", way}, "is itself backed up");
    EXPECT_EQ(box.run({"umount", way}).exitCode, 0);
}

} // namespace

} // namespace norvane
