#include "ui/local_snapshots/local_snapshots_content.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_machine.h"
#include "ui/local_snapshots/local_snapshots_view_model.h"

namespace norvane {

namespace {

const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};

LocalSnapshotsState stateOf(int count, std::optional<std::set<std::string>> onDestination) {
    LocalSnapshotsState state;
    for (int i = 0; i < count; ++i)
        state.snapshots.push_back({plusSeconds(now, -3600.0 * i), std::to_string(i)});
    state.loading = false;
    state.startupVolumeName = "Linux";
    state.onDestination = std::move(onDestination);
    return state;
}

TEST(LocalSnapshotsContent, TheBodyFollowsTheState) {
    LocalSnapshotsState state;
    const auto content = [&state] { return localSnapshotsContent(state, UntranslatedText()); };
    EXPECT_TRUE(content().loading);
    EXPECT_EQ(content().subtitle, "") << "the volume's name is not known yet";
    EXPECT_FALSE(content().canDeleteAll);
    state = stateOf(0, {});
    EXPECT_TRUE(content().empty);
    EXPECT_FALSE(content().canDeleteAll);
    EXPECT_EQ(content().subtitle, "Restore points kept on “Linux”, this Mac's startup disk — separate from "
                                  "your Time Machine backups.");
    state = stateOf(2, {});
    state.destinationName = "Backup Disk";
    EXPECT_FALSE(content().loading || content().empty);
    EXPECT_EQ(content().caption, "2 SNAPSHOTS");
    EXPECT_TRUE(content().canDeleteAll);
    EXPECT_EQ(content().subtitle, "Restore points kept on “Linux” (this Mac's startup disk) — separate from "
                                  "your backups on “Backup Disk”.");
    state.busy = true;
    EXPECT_FALSE(content().canDeleteAll);
    state.busy = false;
    state.loading = true;
    EXPECT_TRUE(content().loading) << "a refresh, whatever is known";
}

TEST(LocalSnapshotsContent, ARowTellsWhatCoversIt) {
    LocalSnapshotsState state = stateOf(2, std::set<std::string>{"1"});
    const auto rows = [&state] {
        return localSnapshotRows(state, now, SimulatedFormats(), UntranslatedText());
    };
    EXPECT_EQ(rows()[1]["badgeTip"], "A completed backup covers this restore point.");
    state.destinationName = "Backup Disk";
    EXPECT_EQ(
        rows()[0],
        (QVariantMap{{"token", "0"},
                     {"date", "D2026-03-05 10:00"},
                     {"age", "0 s"},
                     {"badgeSymbol", "exclamationmark.triangle.fill"},
                     {"badge", "Only on this Mac"},
                     {"badgeTip", "No completed backup on your backup drive covers this restore point yet."},
                     {"badgeWarns", true},
                     {"deleteLabel", "Delete snapshot from D2026-03-05 10:00"}}));
    EXPECT_EQ(rows()[1],
              (QVariantMap{{"token", "1"},
                           {"date", "D2026-03-05 09:00"},
                           {"age", "3600 s"},
                           {"badgeSymbol", "checkmark.seal.fill"},
                           {"badge", "In backups"},
                           {"badgeTip", "A completed backup on “Backup Disk” covers this restore point."},
                           {"badgeWarns", false},
                           {"deleteLabel", "Delete snapshot from D2026-03-05 09:00"}}));
    state.onDestination.reset();
    EXPECT_EQ(rows()[0]["badge"], "");
}

struct LocalSnapshotsViewModelTest : testing::Test {
    SimulatedMachine machine{now};
    TMUtil tmUtil{machine.timeMachine, {"tmutil", "/usr/bin/defaults"}, machine.network, machine.workspace};
    LocalSnapshotsViewModel model{
        {machine.time, tmUtil, machine.files, machine.texts, [] { return *Calendar::inZone("UTC"); }},
        {machine.time, machine.time, machine.formats}};

    void SetUp() override {
        machine.timeMachine.localSnapshots = {"2026-03-05-080000", "2026-03-05-090000"};
        model.opened();
        machine.time.advance(0.5);
        machine.timeMachine.commands.clear();
    }
    [[nodiscard]] QString row(int index, const char* role) {
        const int key = model.rows()->roleNames().key(role);
        return model.rows()->data(model.rows()->index(index, 0), key).toString();
    }
};

TEST_F(LocalSnapshotsViewModelTest, DeletesNothingWithoutAnAnswer) {
    model.askToDelete("2026-03-05-080000");
    EXPECT_NE(model.question().title, "");
    model.cancel();
    EXPECT_EQ(model.question().title, "");
    model.confirm(); // too late
    model.askToDelete("no such");
    EXPECT_EQ(model.question().title, "");
    model.askToDeleteAll();
    model.closed();
    EXPECT_EQ(model.question().title, "") << "a window that comes back asks nothing";
    machine.time.advance(1);
    EXPECT_TRUE(machine.timeMachine.commands.empty());
}

TEST_F(LocalSnapshotsViewModelTest, DeletesWhatWasConfirmedAndMeanwhileNothingElse) {
    model.askToDelete("2026-03-05-080000");
    model.confirm();
    EXPECT_TRUE(model.content().busy);
    model.askToDeleteAll();
    model.askToDelete("2026-03-05-090000");
    EXPECT_EQ(model.question().title, "");
    machine.time.advance(1);
    EXPECT_FALSE(model.content().busy);
    ASSERT_EQ(model.rows()->rowCount(), 1);
    EXPECT_EQ(row(0, "token"), "2026-03-05-090000");
    model.askToDeleteAll();
    model.confirm();
    machine.time.advance(1);
    EXPECT_TRUE(model.content().empty);
    EXPECT_EQ(machine.timeMachine.commands[2], "tmutil deletelocalsnapshots 2026-03-05-090000");
}

TEST_F(LocalSnapshotsViewModelTest, TheAgesGoOnAloneWhileTheWindowIsShown) {
    int contents = 0;
    QObject::connect(&model, &LocalSnapshotsViewModel::contentChanged, [&contents] { ++contents; });
    EXPECT_EQ(row(0, "age"), "3600 s");
    machine.time.advance(5);
    EXPECT_EQ(row(0, "age"), "3605 s");
    EXPECT_EQ(contents, 0);
    model.closed();
    machine.time.advance(60);
    EXPECT_EQ(row(0, "age"), "3605 s");
    machine.timeMachine.localSnapshots.emplace_back("2026-03-05-100000");
    model.opened();
    EXPECT_TRUE(model.content().loading);
    machine.time.advance(1);
    EXPECT_EQ(row(0, "token"), "2026-03-05-100000");
}

} // namespace

} // namespace norvane
