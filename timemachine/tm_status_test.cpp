#include "timemachine/tm_status.h"

#include <gtest/gtest.h>

#include "timemachine/tm_util.h"

namespace norvane {

namespace {

std::string withKeys(const std::string& keys) { return "Backup session status:\n{\n" + keys + "\n}\n"; }

TEST(ParseStatus, ReadsARunningCopy) {
    const TMStatus status = TMUtil::parseStatus(R"(Backup session status:
{
    BackupPhase = Copying;
    DateOfStateChange = "2026-03-05 10:00:00 +0000";
    FractionOfProgressBar = "0.7";
    Percent = "0.4213";
    Progress =     {
        TimeRemaining = 1374;
        bytes = 5119561728;
        files = 88013;
        totalBytes = 12151853056;
        totalFiles = 214532;
    };
    Running = 1;
    Stopping = 0;
})");
    EXPECT_TRUE(status.running);
    EXPECT_EQ(status.percent, 0.4213);
    EXPECT_EQ(status.phase, "Copying");
    EXPECT_EQ(status.fractionOfProgressBar, 0.7);
    EXPECT_EQ(status.progress, (BackupProgress{5119561728, 12151853056, 88013, 214532, 1374.0}));
    EXPECT_EQ(status.raw.size(), 7U);
}

TEST(ParseStatus, AnythingElseIsIdle) {
    for (const char* text : {"", "no dictionary", "{", "{ Running = 1; ", "{ Running = ; }", "}{", "{(1)}"})
        EXPECT_EQ(TMUtil::parseStatus(text), TMStatus::idle()) << text;
}

TEST(ParseStatus, RunningMeansExactlyOne) {
    const std::pair<const char*, bool> cases[] = {{"Running = 1;", true},    {"Running = \"1\";", true},
                                                  {"Running = YES;", false}, {"Running = 0;", false},
                                                  {"running = 1;", false},   {"Running = (1);", false}};
    for (const auto& [keys, running] : cases)
        EXPECT_EQ(TMUtil::parseStatus(withKeys(keys)).running, running) << keys;
    // An XML property list gives the same record. Its text begins before the first brace, so it comes bare.
    EXPECT_FALSE(TMUtil::parseStatus("<plist><dict><key>Running</key><true/></dict></plist>").running);
}

TEST(ParseStatus, FractionsAreWholeNumbersInTextClampedToOne) {
    const std::pair<const char*, std::optional<double>> cases[] = {{"-1", std::nullopt},
                                                                   {"0", 0.0},
                                                                   {"1.7", 1.0},
                                                                   {" 0.5", std::nullopt},
                                                                   {"0.5x", std::nullopt},
                                                                   {"0.5 ", std::nullopt},
                                                                   {"", std::nullopt},
                                                                   {"+0.5", 0.5},
                                                                   {"nan", std::nullopt},
                                                                   {"inf", 1.0},
                                                                   {"0x1p-1", 0.5},
                                                                   {"1e999", 1.0},
                                                                   {"1e-999", 0.0},
                                                                   {"-0", -0.0},
                                                                   {"5e-1", 0.5},
                                                                   {"0,5", std::nullopt},
                                                                   {"+-1", std::nullopt},
                                                                   {"0x", std::nullopt},
                                                                   {"0x-2000", std::nullopt},
                                                                   {"0xinf", std::nullopt},
                                                                   {"nan(1)", std::nullopt},
                                                                   {"0x1e-1", std::nullopt},
                                                                   {"infinity", 1.0}};
    const std::string tiny = "0." + std::string(400, '0') + "1";
    EXPECT_EQ(TMUtil::parseStatus(withKeys("Percent = \"" + tiny + "\";")).percent, 0.0);
    for (const auto& [text, expected] : cases) {
        const TMStatus status = TMUtil::parseStatus(
            withKeys("Percent = \"" + std::string(text) + "\"; FractionOfProgressBar = \"" + text + "\";"));
        EXPECT_EQ(status.percent, expected) << text;
        EXPECT_EQ(status.fractionOfProgressBar, expected) << text;
    }
}

TEST(ParseStatus, ProgressNeedsBytesAndAPositiveTotal) {
    const std::pair<const char*, std::optional<BackupProgress>> cases[] = {
        {"bytes = 1; totalBytes = 2;", BackupProgress{1, 2, 0, 0, std::nullopt}},
        {"bytes = \"1234.9\"; totalBytes = 5000; files = 3;", BackupProgress{1234, 5000, 3, 0, std::nullopt}},
        {"bytes = 1; files = 3;", std::nullopt},
        {"bytes = 1; totalBytes = 0;", std::nullopt},
        {"totalBytes = 2;", std::nullopt},
        {"bytes = 1; totalBytes = 2; TimeRemaining = 0;", BackupProgress{1, 2, 0, 0, std::nullopt}},
        {"bytes = 1; totalBytes = 2; TimeRemaining = \"0.5\";", BackupProgress{1, 2, 0, 0, 0.5}},
        {"bytes = inf; totalBytes = 2;", std::nullopt},
        {"bytes = 1; totalBytes = 1e19;", std::nullopt},
        {"bytes = 1; totalBytes = 2; files = nan;", std::nullopt},
    };
    for (const auto& [keys, expected] : cases)
        EXPECT_EQ(TMUtil::parseStatus(withKeys("Progress = {" + std::string(keys) + "};")).progress, expected)
            << keys;
    EXPECT_EQ(TMUtil::parseStatus(withKeys("Progress = 5;")).progress, std::nullopt);
}

} // namespace

} // namespace norvane
