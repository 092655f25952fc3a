#include "ui/health/health_content.h"

#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"
#include "ui/health/duration_chart.h"
#include "ui/health/health_view_model.h"

namespace norvane {

namespace {

using Attempt = HealthData::Attempt;

const Instant now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};
Instant hours(double count) { return plusSeconds(now, count * 3600); }

Attempt attempt(double hoursFromNow, std::optional<double> seconds) {
    return {hours(hoursFromNow), hours(hoursFromNow), seconds.has_value(), seconds};
}

Calendar utc() { return *Calendar::inZone("UTC"); }

HealthContent contentOf(const HealthData& data) {
    ControllerState state;
    state.healthData = data;
    return healthContent(state, utc(), SimulatedFormats(), UntranslatedText());
}

StatTile tileOf(const HealthData& data, int index) { return contentOf(data).tiles[index].value<StatTile>(); }

TEST(HealthContent, TellsWhenTheLastBackupWas) {
    ControllerState state;
    const auto subtitle = [&state] {
        return lastVerifiedBackup(state, now, SimulatedFormats(), UntranslatedText());
    };
    EXPECT_EQ(subtitle(), "No verified backups recorded");
    state.healthData.emplace();
    EXPECT_EQ(subtitle(), "No verified backups recorded");
    EXPECT_FALSE(healthContent(state, utc(), SimulatedFormats(), UntranslatedText()).loading);
    state.healthData->lastSuccess = hours(-2);
    EXPECT_EQ(subtitle(), "Last verified backup 7200 s ago");
}

TEST(HealthContent, TheBackupDisksBarWarnsWhenNearlyFull) {
    struct Case {
        std::optional<std::int64_t> used, available;
        const char* detail;
        bool bar, warns;
    };
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const Case& c :
         {Case{900, 100, "90% full", true, true}, Case{899, 101, "90% full", true, false},
          Case{0, 0, "", false, false}, Case{{}, 100, "", false, false}, Case{100, {}, "", false, false},
          Case{most, most, "50% full", true, false}, Case{5, 195, "2% full", true, false}}) {
        HealthData data;
        data.destinationBytesUsed = c.used;
        data.destinationBytesAvailable = c.available;
        const StatTile tile = tileOf(data, 0);
        EXPECT_EQ(tile.detail, c.detail);
        EXPECT_EQ(tile.hasFraction(), c.bar);
        EXPECT_EQ(tile.warns(), c.warns) << c.detail;
    }
}

TEST(HealthContent, DurationsAreRoundedToTheEvenNeighbour) {
    const std::pair<double, const char*> cases[] = {{0, "0 sec"},   {89, "89 sec"},   {89.5, "90 sec"},
                                                    {90, "2 min"},  {149, "2 min"},   {150, "2 min"},
                                                    {210, "4 min"}, {7199, "120 min"}};
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(durationText(seconds, UntranslatedText()), text) << seconds;

    EXPECT_EQ(typicalDuration({}), std::nullopt);
    EXPECT_EQ(typicalDuration({attempt(-1, {})}), std::nullopt);
    EXPECT_EQ(typicalDuration({attempt(-3, 30), attempt(-2, 600), attempt(-1, 120), attempt(0, {})}), 120);
    EXPECT_EQ(typicalDuration({attempt(-3, 30), attempt(-2, 1200), attempt(-1, 120), attempt(0, 600)}), 600);
}

TEST(HealthContent, TheLatestAttemptsComeNewestFirst) {
    HealthData data;
    EXPECT_TRUE(contentOf(data).attempts.isEmpty());
    EXPECT_TRUE(contentOf(data).chart.isEmpty());
    for (int i = -6; i <= 0; ++i)
        data.attempts.push_back(attempt(i, i == 0 ? std::nullopt : std::optional(60.0 * -i)));
    const QVariantList rows = contentOf(data).attempts;
    ASSERT_EQ(rows.size(), 6);
    EXPECT_EQ(
        rows.first().toMap(),
        (QVariantMap{{"success", false}, {"date", "D2026-03-05 10:00"}, {"result", "did not complete"}}));
    EXPECT_EQ(rows.last().toMap(),
              (QVariantMap{{"success", true}, {"date", "D2026-03-05 05:00"}, {"result", "5 min"}}));
    const QVariantList bars = contentOf(data).chart["bars"].toList();
    ASSERT_EQ(bars.size(), 7);
    EXPECT_EQ(bars.first().toMap()["text"], "D2026-03-05 04:00, 6 min") << "bars are in the order of time";
}

TEST(HealthContent, CoffeeIsOfferedFromFiftyBackupsOn) {
    HealthData data;
    data.backupCount = 49;
    EXPECT_EQ(contentOf(data).coffee, "");
    data.backupCount = 50;
    EXPECT_EQ(contentOf(data).coffee, "Norvane has verified 50 backups for you ☕");
}

TEST(DurationChart, TheScaleOfMinutesHoldsTheLongestButThreeHoursAtMost) {
    struct Case {
        std::vector<std::optional<double>> minutes;
        double top;
        std::vector<double> marks;
    };
    for (const Case& c :
         {Case{{}, 5.75, {0, 2, 4}}, Case{{std::nullopt}, 5, {0, 1, 2, 3, 4, 5}},
          Case{{2}, 5, {0, 1, 2, 3, 4, 5}}, Case{{2, 20, std::nullopt}, 23, {0, 5, 10, 15, 20}},
          Case{{200}, 180, {0, 60, 120, 180}}}) {
        std::vector<Attempt> attempts;
        for (const auto& minutes : c.minutes)
            attempts.push_back(attempt(static_cast<double>(attempts.size()),
                                       minutes ? std::optional(*minutes * 60) : std::nullopt));
        const DurationChart chart = durationChart(attempts, utc(), SimulatedFormats());
        EXPECT_DOUBLE_EQ(chart.top, c.top);
        EXPECT_EQ(chart.minuteMarks, c.marks) << c.top;
        EXPECT_EQ(chart.bars.size(), c.minutes.size());
    }
}

TEST(DurationChart, DatesAreMarkedAtRoundTimesOfTheUsersZone) {
    using Mark = DurationChart::DateMark;
    const auto marks = [](std::initializer_list<double> times, const char* zone = "UTC") {
        std::vector<Attempt> attempts;
        for (const double time : times)
            attempts.push_back(attempt(time, 60));
        return durationChart(attempts, *Calendar::inZone(zone), SimulatedFormats()).dateMarks;
    };
    EXPECT_EQ(marks({0}), (std::vector<Mark>{{0.5, "03-05"}})) << "one attempt stands in the middle";
    EXPECT_EQ(marks({0, 0}), (std::vector<Mark>{{0.5, "03-05"}}));
    EXPECT_EQ(marks({0.1, 0.3}), (std::vector<Mark>{{0, "03-05"}})) << "no full hour between them";
    EXPECT_EQ(marks({-2, -1, 2}),
              (std::vector<Mark>{
                  {0, "T08:00"}, {0.25, "T09:00"}, {0.5, "T10:00"}, {0.75, "T11:00"}, {1, "T12:00"}}));
    EXPECT_EQ(marks({0, 24}),
              (std::vector<Mark>{
                  {2 / 24.0, "T12:00"}, {8 / 24.0, "T18:00"}, {14 / 24.0, "03-06"}, {20 / 24.0, "T06:00"}}));
    EXPECT_EQ(marks({-10, 62}, "UTC"),
              (std::vector<Mark>{{0, "03-05"}, {24 / 72.0, "03-06"}, {48 / 72.0, "03-07"}, {1, "03-08"}}));
    EXPECT_EQ(marks({-10, 62}, "Europe/Berlin").front(), (Mark{23 / 72.0, "03-05"}))
        << "midnight in Berlin, told in UTC";
    EXPECT_EQ(marks({-29 * 24, 0}).size(), 4U);
    EXPECT_EQ(marks({-29 * 24, 1e9}).size(), 1U) << "after the clock was set";
}

TEST(HealthViewModel, FollowsTheControllerAndTheTimeWhileItIsShown) {
    ControllerHarness h;
    h.store.setLastBackupDate(minute(-60));
    h.timeMachine.snapshotDates = {minute(-60)};
    h.startSettled();
    int openedActivity = 0;
    HealthViewModel model({*h.controller, h.time, h.time, h.SimulatedMachine::formats, h.texts, h.workspace,
                           utc, "https://norvane.example"},
                          {[&] { ++openedActivity; }, [] {}});
    int contents = 0;
    QObject::connect(&model, &HealthViewModel::contentChanged, [&contents] { ++contents; });
    model.opened();
    EXPECT_TRUE(model.content().loading);
    model.refresh();
    h.time.advance(2);
    EXPECT_FALSE(model.content().loading);
    const QString before = model.subtitle();
    contents = 0;
    h.time.advance(2);
    EXPECT_NE(model.subtitle(), before);
    EXPECT_EQ(contents, 0) << "only the time went on";

    h.timeMachine.bytesAvailable = 1;
    model.refresh();
    EXPECT_FALSE(model.content().loading) << "the old figures stay meanwhile";
    h.time.advance(1);
    EXPECT_EQ(contents, 1);
    EXPECT_EQ(model.content().tiles.first().value<StatTile>().value, "1 bytes free");

    model.closed();
    const QString closedAt = model.subtitle();
    h.time.advance(10);
    EXPECT_EQ(model.subtitle(), closedAt);
    model.buyCoffee();
    model.openActivity();
    EXPECT_EQ(h.workspace.opened, std::vector<std::string>{"https://norvane.example/coffee?src=health"});
    EXPECT_EQ(openedActivity, 1);
}

} // namespace

} // namespace norvane
