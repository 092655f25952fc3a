#include "platform/translator.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace norvane {

namespace {

TEST(Translator, FillsInPlaceholdersInOrder) {
    using namespace std::string_literals;
    EXPECT_EQ(fillIn("%@: %d of %d, %.1f%% %@", {"Größe"s, std::int64_t{-3}, std::int64_t{7}, 0.25, "%d"s}),
              "Größe: -3 of 7, 0.2% %d");
    EXPECT_EQ(fillIn("%.1f", {-1234567.96}), "-1234568.0");
    EXPECT_EQ(fillIn("%.1f", {std::numeric_limits<double>::max()}).size(), 311U);
    EXPECT_EQ(fillIn("%.0f %.0f %.0f", {0.5, 1.5, -0.2}), "0 2 -0");
    EXPECT_EQ(fillIn("100%", {}), "100%");
}

TEST(Translator, LeavesWhatHasNoFittingArgument) {
    using namespace std::string_literals;
    EXPECT_EQ(fillIn("%@ %d", {"a"s}), "a %d");
    EXPECT_EQ(fillIn("%d %@", {"a"s, "b"s}), "%d b");
    EXPECT_EQ(fillIn("%s %5d %.2f %", {std::int64_t{1}}), "%s %5d %.2f %");
}

} // namespace

} // namespace norvane
