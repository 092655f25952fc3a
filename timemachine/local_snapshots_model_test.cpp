#include "timemachine/local_snapshots_model.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_machine.h"

namespace norvane {

namespace {

using Strings = std::vector<std::string>;

const Instant morning = std::chrono::sys_days{std::chrono::year{2024} / 5 / 1} + std::chrono::hours{9};

TEST(CoveredSnapshots, ABackupWithinSixHoursHoldsTheState) {
    const TMUtil::LocalSnapshot snapshot{morning, "a"};
    struct Case {
        std::vector<double> backups; ///< Seconds after the snapshot.
        bool covered;
    };
    for (const Case& c :
         {Case{{}, false}, Case{{-1}, false}, Case{{0}, true}, Case{{21'600}, true}, Case{{21'601}, false},
          Case{{86'400, 3600, -3600}, true}, Case{{86'400, -3600}, false}}) {
        std::vector<Instant> dates;
        for (const double seconds : c.backups)
            dates.push_back(plusSeconds(morning, seconds));
        EXPECT_EQ(coveredSnapshots({snapshot}, dates).contains("a"), c.covered) << c.backups.size();
    }
}

struct LocalSnapshotsModelTest : testing::Test {
    SimulatedMachine machine{plusSeconds(morning, 86'400)};
    TMUtil tmUtil{
        machine.timeMachine, {"/usr/bin/tmutil", "/usr/bin/defaults"}, machine.network, machine.workspace};
    int changes = 0;
    LocalSnapshotsModel model{
        {machine.time, tmUtil, machine.files, machine.texts, [] { return *Calendar::inZone("UTC"); }},
        [this] { ++changes; }};

    void SetUp() override {
        machine.timeMachine.localSnapshots = {"2024-05-01-101500", "2024-05-01-111500", "2024-05-01-201500"};
        machine.timeMachine.snapshotDates = {plusSeconds(morning, 8 * 3600)}; // 17:00
        machine.timeMachine.secondSnapshotDates = {{plusSeconds(morning, 2 * 3600)}};
    }
    void refresh() {
        model.refresh();
        machine.time.advance(1);
    }
    [[nodiscard]] Strings listed() const {
        Strings tokens;
        for (const auto& snapshot : model.state().snapshots)
            tokens.push_back(snapshot.token);
        return tokens;
    }
};

TEST_F(LocalSnapshotsModelTest, ListsTheNewestFirstWithWhatCoversThem) {
    EXPECT_TRUE(model.state().loading) << "before anything was asked";
    model.refresh();
    EXPECT_EQ(changes, 1);
    machine.time.advance(1);
    EXPECT_EQ(changes, 2) << "in one step";
    EXPECT_FALSE(model.state().loading);
    EXPECT_EQ(listed(), (Strings{"2024-05-01-201500", "2024-05-01-111500", "2024-05-01-101500"}));
    EXPECT_EQ(model.state().onDestination, std::set<std::string>{"2024-05-01-111500"});
    EXPECT_EQ(model.state().uncoveredCount(), 2);
    EXPECT_EQ(model.state().destinationName, "Backup Disk");
    EXPECT_EQ(model.state().startupVolumeName, "Startup Disk");
}

TEST_F(LocalSnapshotsModelTest, WithoutTheDestinationsRecordsNothingIsUncovered) {
    machine.timeMachine.name.reset();
    refresh();
    EXPECT_EQ(model.state().onDestination, std::nullopt);
    EXPECT_EQ(model.state().uncoveredCount(), 0);
    EXPECT_EQ(model.state().destinationName, std::nullopt);

    machine.timeMachine.toolsMissing = true;
    refresh();
    EXPECT_TRUE(listed().empty());
    EXPECT_EQ(model.state().errorMessage, std::nullopt);
}

TEST_F(LocalSnapshotsModelTest, DeletesOneAfterTheOtherAndCountsWhatFails) {
    refresh();
    machine.timeMachine.undeletable = {"2024-05-01-111500"};
    machine.timeMachine.commands.clear();
    model.deleteAll();
    EXPECT_TRUE(model.state().busy);
    model.deleteTokens({"2024-05-01-101500"}); // dropped
    machine.time.advance(1);
    EXPECT_FALSE(model.state().busy);
    EXPECT_EQ(machine.timeMachine.commands,
              (Strings{"tmutil deletelocalsnapshots 2024-05-01-201500",
                       "tmutil deletelocalsnapshots 2024-05-01-111500",
                       "tmutil deletelocalsnapshots 2024-05-01-101500", "tmutil listlocalsnapshots"}));
    EXPECT_EQ(listed(), Strings{"2024-05-01-111500"});
    EXPECT_EQ(model.state().uncoveredCount(), 0);
    EXPECT_EQ(model.state().errorMessage,
              "Couldn't remove 1 snapshot(s). Time Machine may be busy — try again shortly.");

    machine.timeMachine.undeletable.clear();
    model.deleteTokens({"2024-05-01-111500"});
    EXPECT_EQ(model.state().errorMessage, std::nullopt);
    machine.time.advance(1);
    EXPECT_TRUE(listed().empty());

    const int before = changes;
    model.deleteAll();
    EXPECT_EQ(changes, before) << "there was nothing to delete";
}

TEST_F(LocalSnapshotsModelTest, ARefreshForgetsTheErrorAndALateResultFindsNobody) {
    refresh();
    model.deleteTokens({"no such"});
    machine.time.advance(1);
    ASSERT_NE(model.state().errorMessage, std::nullopt);
    model.refresh();
    EXPECT_EQ(model.state().errorMessage, std::nullopt);
    {
        LocalSnapshotsModel gone(
            {machine.time, tmUtil, machine.files, machine.texts, [] { return *Calendar::inZone("UTC"); }},
            [] {});
        gone.refresh();
    }
    machine.time.advance(1);
    EXPECT_FALSE(model.state().loading);
}

} // namespace

} // namespace norvane
