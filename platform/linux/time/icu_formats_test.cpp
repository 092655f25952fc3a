#include "platform/linux/time/icu_formats.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

namespace norvane {

namespace {

struct InLocale {
    explicit InLocale(const char* name) : previous(icu::Locale::getDefault()) {
        UErrorCode error = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), error);
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("UTC"));
    }
    ~InLocale() {
        UErrorCode error = U_ZERO_ERROR;
        icu::Locale::setDefault(previous, error);
    }
    const icu::Locale previous;
};

const Instant morning =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::minutes{9 * 60 + 7};

TEST(IcuFormats, DatesAndTimesFollowTheLocale) {
    {
        const InLocale locale("en_US");
        EXPECT_EQ(IcuFormats().shortTime(morning), "9:07\u202FAM");
        EXPECT_EQ(IcuFormats().dateAndTime(morning), "Mar 5, 2026, 9:07\u202FAM");
        EXPECT_EQ(IcuFormats().abbreviatedDate(morning), "Mar 5, 2026");
        EXPECT_EQ(IcuFormats().monthAndDay(morning), "Mar 5");
    }
    const InLocale locale("de");
    EXPECT_EQ(IcuFormats().dateAndTime(morning), "05.03.2026, 09:07");
    EXPECT_EQ(IcuFormats().monthAndDay(morning), "5. März");
    EXPECT_FALSE(IcuFormats().dateAndTime(distantFuture).empty());
}

TEST(IcuFormats, DistancesInTimeAreNamed) {
    const InLocale locale("en_US");
    const IcuFormats formats;
    const std::pair<double, const char*> cases[] = {{0, "now"},
                                                    {30, "in 30 seconds"},
                                                    {59.6, "in 1 minute"},
                                                    {3599, "in 1 hour"},
                                                    {7200, "in 2 hours"},
                                                    {-7200, "2 hours ago"},
                                                    {23 * 3600, "in 23 hours"},
                                                    {24 * 3600, "tomorrow"},
                                                    {38 * 3600, "tomorrow"},
                                                    {39 * 3600, "in 2 days"},
                                                    {-24 * 3600, "yesterday"}};
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(formats.relativeTime(plusSeconds(morning, seconds), morning), text) << seconds;
    EXPECT_EQ(formats.dateAndTimeWithSeconds(morning), "Mar 5, 2026, 9:07:00\u202FAM");
    const InLocale german("de");
    EXPECT_EQ(IcuFormats().relativeTime(plusSeconds(morning, 48 * 3600), morning), "übermorgen");
}

TEST(IcuFormats, ClocksAndWeeksFollowTheLocale) {
    struct Case {
        const char* locale;
        bool hours24;
        int firstWeekday;
        const char* week;
        const char* monday;
    };
    for (const Case& c :
         {Case{"en_US", false, 1, "SMTWTFS", "Monday"}, Case{"de", true, 2, "SMDMDFS", "Montag"},
          Case{"fr_CA", true, 1, "DLMMJVS", "lundi"}, Case{"es", true, 2, "DLMXJVS", "lunes"}}) {
        const InLocale locale(c.locale);
        const IcuFormats formats;
        std::string week;
        for (int weekday = 1; weekday <= 7; ++weekday)
            week += formats.weekdaySymbol(weekday);
        EXPECT_EQ(week, c.week) << c.locale;
        EXPECT_EQ(formats.weekdayName(2), c.monday);
        EXPECT_EQ(formats.firstWeekday(), c.firstWeekday) << c.locale;
        EXPECT_EQ(formats.uses24Hours(), c.hours24) << c.locale;
    }
    const InLocale locale("en_US");
    EXPECT_EQ(IcuFormats().dayHalf(false) + IcuFormats().dayHalf(true), "AMPM");
    EXPECT_EQ(IcuFormats().weekdayName(8), "");
}

TEST(IcuFormats, ByteCountsAsFileManagersShowThem) {
    const InLocale locale("en_US");
    const std::pair<std::int64_t, const char*> cases[] = {{0, "0 bytes"},
                                                          {1, "1 byte"},
                                                          {999, "999 bytes"},
                                                          {1000, "1 kB"},
                                                          {88'013, "88 kB"},
                                                          {999'499, "999 kB"},
                                                          {999'500, "1 MB"},
                                                          {1'260'000, "1.3 MB"},
                                                          {5'119'561'728, "5.12 GB"},
                                                          {2'000'000'000'000, "2 TB"},
                                                          {INT64_MAX, "9,223.37 PB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(IcuFormats().byteCount(bytes), text) << bytes;
}

TEST(IcuFormats, TimesAreTold) {
    const InLocale locale("en_US");
    const IcuFormats formats;
    const std::tuple<double, const char*, const char*> cases[] = {
        {-3, "0 sec", "0 seconds"},          {1.9, "1 sec", "2 seconds"},
        {59, "59 sec", "59 seconds"},        {60, "1 min", "1 minute"},
        {285, "4 min, 45 sec", "5 minutes"}, {3599, "59 min, 59 sec", "1 hour"},
        {7980, "2 hr, 13 min", "2 hours"},   {7205, "2 hr", "2 hours"},
        {90'000, "1 day, 1 hr", "25 hours"}, {1e300, "11,574,074 days, 1 hr", "277,777,778 hours"}};
    for (const auto& [seconds, elapsed, round] : cases) {
        EXPECT_EQ(formats.elapsedTime(seconds), elapsed);
        EXPECT_EQ(formats.roundTime(seconds), round);
    }
    EXPECT_EQ(formats.percentage(0.427), "43%");
    const InLocale german("de");
    EXPECT_EQ(IcuFormats().percentage(1), "100\u00A0%");
    EXPECT_EQ(IcuFormats().roundTime(300), "5 Minuten");
}

} // namespace

} // namespace norvane
