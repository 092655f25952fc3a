#include <gtest/gtest.h>

#include "timemachine/tm_util.h"

namespace norvane {

namespace {

std::vector<std::string> tokens(const std::string& text) {
    std::vector<std::string> found;
    for (const auto& snapshot : TMUtil::parseLocalSnapshots(text, *Calendar::inZone("Europe/Berlin")))
        found.push_back(snapshot.token);
    return found;
}

TEST(LocalSnapshots, AreReadNewestFirst) {
    const auto snapshots =
        TMUtil::parseLocalSnapshots("Snapshots for disk /:\n"
                                    "com.apple.TimeMachine.2024-05-01-101500.local\n"
                                    "\t com.apple.TimeMachine.2024-05-02-000059.local \t\n",
                                    *Calendar::inZone("Europe/Berlin"));
    ASSERT_EQ(snapshots.size(), 2U);
    EXPECT_EQ(snapshots[0].token, "2024-05-02-000059");
    EXPECT_EQ(snapshots[1].token, "2024-05-01-101500");
    const Instant morning =
        std::chrono::sys_days{std::chrono::year{2024} / 5 / 1} + std::chrono::minutes{8 * 60 + 15};
    EXPECT_EQ(snapshots[1].date, morning); // Berlin is two hours ahead
}

TEST(LocalSnapshots, OtherLinesAreSkipped) {
    for (const char* line :
         {"", "com.apple.TimeMachine.local", "com.apple.TimeMachine..local",
          "com.apple.TimeMachine.2024-13-01-101500.local", "com.apple.TimeMachine.2023-02-29-101500.local",
          "com.apple.TimeMachine.2024-05-01-241500.local", "com.apple.TimeMachine.2024-05-01-101560.local",
          "com.apple.TimeMachine.2024-05-01-1015000.local", "com.apple.TimeMachine.2024-05-01-10150.local",
          "com.apple.TimeMachine.2024-05-01-101500.other", "com.apple.timemachine.2024-05-01-101500.local",
          "com.example.TimeMachine.2024-05-01-101500.local"})
        EXPECT_TRUE(tokens(line).empty()) << line;
}

} // namespace

} // namespace norvane
