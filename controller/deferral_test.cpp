#include "controller/deferral.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

namespace norvane {

namespace {

using Reasons = std::vector<std::string>;

struct Machine {
    SimulatedMeasurements measurements;
    SimulatedFileSystem files;
    ConditionsConfig conditions = ConditionsConfig::defaultConditions();
    std::optional<DestinationFolder> destination;

    Reasons reasons() {
        return ConditionProbes::deferralReasons(conditions, destination, measurements, files);
    }
};

TEST(DeferralReasons, MeasuresNothingThatIsSwitchedOff) {
    Machine machine;
    machine.conditions.maxLoadPerCore = 0;
    EXPECT_TRUE(machine.reasons().empty());
    EXPECT_EQ(machine.measurements.queries, 0);
}

TEST(DeferralReasons, PowerReasonsInOrder) {
    Machine machine;
    machine.measurements.power = {false, 19, true};
    machine.conditions.deferInLowPowerMode = true;
    EXPECT_EQ(machine.reasons(), Reasons{"Low Power Mode is on"});
    machine.conditions.deferInLowPowerMode = false;
    machine.conditions.minBatteryPercent = 20;
    EXPECT_EQ(machine.reasons(), Reasons{"battery below 20%"});
    machine.measurements.power = {true, 19, true};
    EXPECT_EQ(machine.reasons(), Reasons{"battery below 20%"}) << "the adapter does not lift it";
    machine.conditions.requireAC = machine.conditions.deferInLowPowerMode = true;
    machine.measurements.power = {false, 19, true};
    EXPECT_EQ(machine.reasons(),
              (Reasons{"running on battery power", "battery below 20%", "Low Power Mode is on"}));
    machine.measurements.power = {false, 20, false};
    EXPECT_EQ(machine.reasons(), Reasons{"running on battery power"});
    machine.measurements.power = {};
    EXPECT_TRUE(machine.reasons().empty()) << "no battery";
}

TEST(DeferralReasons, OnlyTheFirstActivityCounts) {
    Machine machine;
    machine.conditions.deferWhileCameraOrMicInUse = true;
    machine.measurements.media.screen = true;
    EXPECT_EQ(machine.reasons(), Reasons{"screen is being shared"});
    machine.measurements.media.microphone = true;
    EXPECT_EQ(machine.reasons(), Reasons{"microphone is in use"});
    machine.measurements.media.camera = true;
    machine.measurements.queries = 0;
    EXPECT_EQ(machine.reasons(), Reasons{"camera is in use"});
    EXPECT_EQ(machine.measurements.queries, 1);
}

TEST(DeferralReasons, AtMostThreeApplicationsInTheConfiguredOrder) {
    Machine machine;
    machine.conditions.blockedApps = {{"e", "E"}, {"A", "Upper"}, {"d", "D"}, {"a", "A"}, {"b", "B"}};
    machine.measurements.applications = {"a", "b", "d", "e"};
    EXPECT_EQ(machine.reasons(), (Reasons{"E is running", "D is running", "A is running"}));
}

TEST(DeferralReasons, LoadMustExceedTheLimit) {
    Machine machine;
    machine.conditions.maxLoadPerCore = 1.0;
    for (const auto& [load, expected] : {std::pair<std::optional<double>, Reasons>{std::nullopt, {}},
                                         {1.0, {}},
                                         {1.04, {"the Mac is busy (load 1.0/core)"}},
                                         {2.46, {"the Mac is busy (load 2.5/core)"}}}) {
        machine.measurements.load = load;
        EXPECT_EQ(machine.reasons(), expected);
    }
}

TEST(DeferralReasons, TheDiskIsMissedOnlyWhereItsPlaceIsKnown) {
    Machine machine;
    machine.conditions.requireDestinationPresent = true;
    EXPECT_TRUE(machine.reasons().empty());
    machine.destination = DestinationFolder{"/Volumes/Backup", std::nullopt};
    EXPECT_EQ(machine.reasons(), Reasons{"backup disk isn't connected"});
    machine.files.paths = {"/Volumes/Backup"};
    EXPECT_TRUE(machine.reasons().empty());
    machine.destination = destinationFolderAt("/Volumes/Backup", machine.files);
    EXPECT_TRUE(machine.reasons().empty()) << "a plain folder of the startup disk";
    machine.files.mountPoints = {"/Volumes/Backup"};
    EXPECT_TRUE(machine.reasons().empty()) << "a disk that came after the program had started";
    machine.destination = destinationFolderAt("/Volumes/Backup", machine.files);
    EXPECT_TRUE(machine.reasons().empty());
    machine.files.mountPoints.clear();
    EXPECT_EQ(machine.reasons(), Reasons{"backup disk isn't connected"}) << "an empty mount point";
}

} // namespace

} // namespace norvane
