#include "timemachine_linux/session/backup_session_state.h"

#include <gtest/gtest.h>

#include "platform/text/property_list_text.h"

namespace norvane {

namespace {

TEST(BackupSessionState, PrintsWhatAMacPrints) {
    BackupSessionState state;
    state.phase = phase::copying;
    state.destinationId = "ABC";
    state.mountPoint = "/mnt/disk";
    state.progress = CopyProgress{4213, 7, 10000, 20, 12.6};
    EXPECT_EQ(writeTextPropertyList(statusOf(state)), R"({
    BackupPhase = Copying;
    ClientID = "com.apple.backupd";
    DateOfStateChange = "1970-01-01 00:00:00 +0000";
    DestinationID = ABC;
    DestinationMountPoint = "/mnt/disk";
    FractionOfProgressBar = "0.4292";
    Percent = "0.4213";
    Progress =     {
        Percent = "0.4213";
        TimeRemaining = 13;
        bytes = 4213;
        files = 7;
        totalBytes = 10000;
        totalFiles = 20;
    };
    Running = 1;
    Stopping = 0;
})");
    EXPECT_EQ(writeTextPropertyList(idleStatus()),
              "{\n    ClientID = \"com.apple.backupd\";\n    Percent = \"-1\";\n"
              "    Running = 0;\n}");
}

TEST(BackupSessionState, FractionsStayWithinTheBarAndNeverGoBack) {
    EXPECT_EQ((CopyProgress{5, 1, 0, 4, {}}.fraction()), 0.25);
    EXPECT_EQ((CopyProgress{5, 1, 0, 0, {}}.fraction()), 0);
    EXPECT_EQ((CopyProgress{50, 1, 10, 4, {}}.fraction()), 1);
    BackupSessionState state;
    double previous = state.fractionOfProgressBar();
    for (const char* phase : {phase::findingChanges, phase::copying, phase::finishing}) {
        state.phase = phase;
        state.progress = CopyProgress{phase == std::string(phase::findingChanges) ? 0 : 10, 0, 10, 0, {}};
        EXPECT_GE(state.fractionOfProgressBar(), previous);
        previous = state.fractionOfProgressBar();
    }
    EXPECT_LE(previous, 1);
}

TEST(BackupSessionState, RemainingTimeNeedsAPace) {
    EXPECT_FALSE(estimateSecondsRemaining({0, 0, 100, 1, {}}, 60));
    EXPECT_FALSE(estimateSecondsRemaining({50, 0, 100, 1, {}}, 1));
    EXPECT_FALSE(estimateSecondsRemaining({50, 0, 100, 1, {}}, -60));
    EXPECT_FALSE(estimateSecondsRemaining({100, 1, 100, 1, {}}, 60));
    EXPECT_DOUBLE_EQ(*estimateSecondsRemaining({250, 0, 1000, 0, {}}, 30), 90);
}

} // namespace

} // namespace norvane
