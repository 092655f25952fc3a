#include "diagnostics/crash_reporter.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "platform/simulated/simulated_user_defaults.h"

namespace norvane {

namespace {

const Instant start{std::chrono::sys_days{std::chrono::year{2026} / 3 / 5}};

TEST(CrashReporter, FindsEachOwnReportOnceAndTheNewestLast) {
    SimulatedTime time(start);
    SimulatedUserDefaults defaults;
    SimulatedFileSystem files;
    SimulatedEmailComposer composer;
    const CrashReporter reporter(defaults, files, time, composer, "/reports", "support@example.org");
    const Instant old = plusSeconds(start, -86400);
    files.folders["/reports"] = {{"Norvane-2026-03-04-2.ips", old},   {"Norvane-2026-03-04-1.ips", old},
                                 {"Norvane-2026-03-04-1.crash", old}, {"Norvane-2026-03-04-1.IPS", old},
                                 {"Other-2026-03-04-1.ips", old},     {"Norvane-undated.ips", std::nullopt}};

    const std::vector<std::string> first = {"/reports/Norvane-2026-03-04-1.ips",
                                            "/reports/Norvane-2026-03-04-2.ips"};
    EXPECT_EQ(reporter.findNewReports(), first);
    EXPECT_TRUE(reporter.findNewReports().empty());

    time.advance(60);
    files.folders["/reports"].push_back({"Norvane-2026-03-05-1.ips", plusSeconds(start, 1)});
    EXPECT_EQ(reporter.findNewReports().size(), 1U);
}

TEST(CrashReporter, AdvancesTheCheckEvenWithoutAFolder) {
    SimulatedTime time(start);
    SimulatedUserDefaults defaults;
    SimulatedFileSystem files;
    SimulatedEmailComposer composer;
    EXPECT_TRUE(CrashReporter(defaults, files, time, composer, "/reports", "support@example.org")
                    .findNewReports()
                    .empty());
    EXPECT_EQ(defaults.date("crashReporter.lastCheck.v1"), start);
}

TEST(CrashReporter, PreparesTheMessage) {
    SimulatedTime time(start);
    SimulatedUserDefaults defaults;
    SimulatedFileSystem files;
    SimulatedEmailComposer composer;
    CrashReporter(defaults, files, time, composer, "/reports", "support@example.org")
        .emailReport("/reports/a.ips");
    ASSERT_EQ(composer.composed.size(), 1U);
    const Email& email = composer.composed[0];
    EXPECT_EQ(email.recipient, "support@example.org");
    EXPECT_EQ(email.subject, "Norvane crash report");
    EXPECT_TRUE(email.body.starts_with("Crash report attached. Add any details about what you were doing"));
    EXPECT_TRUE(email.body.ends_with("when it happened:\n\n"));
    EXPECT_EQ(email.attachment, "/reports/a.ips");
}

} // namespace

} // namespace norvane
