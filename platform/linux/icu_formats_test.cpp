#include "platform/linux/icu_formats.h"

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
    }
    const InLocale locale("de");
    EXPECT_EQ(IcuFormats().dateAndTime(morning), "05.03.2026, 09:07");
    EXPECT_FALSE(IcuFormats().dateAndTime(distantFuture).empty());
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

} // namespace
} // namespace norvane
