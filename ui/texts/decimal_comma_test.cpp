#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_machine.h"
#include "platform/text/property_list.h"
#include "scheduler_core/conditions_json.h"
#include "scheduler_core/schedule_json.h"
#include "timemachine/tm_util.h"
#include "ui/texts/schedule_summary.h"

namespace norvane {

namespace {

/// Numbers of tools, files and fixed formats have a point, whatever the user's locale writes.
TEST(DecimalComma, StaysOutOfFixedFormats) {
    std::string folder = testing::TempDir() + "localeXXXXXX";
    ASSERT_TRUE(mkdtemp(folder.data()));
    ASSERT_EQ(std::system(("localedef -i de_DE -f UTF-8 " + folder + "/de_DE.UTF-8").c_str()), 0);
    setenv("LOCPATH", folder.c_str(), 1);
    ASSERT_TRUE(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");

    const UntranslatedText texts;
    const Schedule schedule{{IntervalRule{4.5}}, {}};
    EXPECT_EQ(scheduleSummary(schedule, texts), "Every 4.5 hours");
    EXPECT_EQ(decodeSchedule(encodeSchedule(schedule).value()).value, schedule);
    EXPECT_EQ(TMUtil::parseStatus("{ Percent = \"0.5\"; }").percent, 0.5);
    EXPECT_EQ(TMUtil::parseStatus("{ Percent = \"0,5\"; }").percent, std::nullopt);
    EXPECT_EQ(fillIn("%.1f GB", {2.46}), "2.5 GB");
    EXPECT_EQ(parsePropertyList("<plist><real>0.25</real></plist>"), PropertyList{0.25});

    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
}

} // namespace

} // namespace norvane
