#include "platform/linux/time/icu_formats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unicode/calendar.h>
#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/dtptngen.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/numberformatter.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>
#include <vector>

namespace norvane {

namespace {

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

double milliseconds(Instant instant) { return secondsBetween(Instant{}, instant) * 1000; }

std::string formatted(icu::DateFormat* format, Instant instant) {
    if (!format)
        return {};
    format->adoptTimeZone(icu::TimeZone::createDefault()); // it may have changed
    icu::UnicodeString text;
    return utf8(format->format(milliseconds(instant), text));
}

/// Days of the calendar from one instant to another, in the default time zone.
double calendarDays(const icu::Locale& locale, Instant from, Instant to) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(locale, error));
    if (!calendar)
        return 0;
    const auto dayNumber = [&](Instant instant) {
        calendar->setTime(milliseconds(instant), error);
        return calendar->get(UCAL_JULIAN_DAY, error);
    };
    return static_cast<double>(dayNumber(to)) - static_cast<double>(dayNumber(from));
}

std::string relativeText(const icu::Locale& locale, double count, URelativeDateTimeUnit unit) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter format(locale, nullptr, UDAT_STYLE_LONG,
                                                UDISPCTX_CAPITALIZATION_FOR_MIDDLE_OF_SENTENCE, error);
    icu::UnicodeString text;
    return utf8(format.format(count, unit, text, error));
}

using Width = icu::DateFormatSymbols::DtWidthType;

std::string weekdayText(const icu::Locale& locale, Width width, int weekday) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(locale, error);
    int32_t count = 0;
    const icu::UnicodeString* const names =
        symbols.getWeekdays(count, icu::DateFormatSymbols::STANDALONE, width);
    return weekday >= 1 && weekday < count ? utf8(names[weekday]) : std::string();
}

/// With these fields in the locale's order; null when it has no such form.
std::unique_ptr<icu::DateFormat> dateFormatOf(const char* fields, const icu::Locale& locale) {
    UErrorCode error = U_ZERO_ERROR;
    return std::unique_ptr<icu::DateFormat>(
        icu::DateFormat::createInstanceForSkeleton(fields, locale, error));
}

constexpr double secondsPerHour = 3600;
constexpr double longestTime = 1e12;

struct TimeUnit {
    double seconds;
    icu::MeasureUnit (*unit)();
};
constexpr std::array<TimeUnit, 4> timeUnits = {{{86'400, icu::MeasureUnit::getDay},
                                                {secondsPerHour, icu::MeasureUnit::getHour},
                                                {60, icu::MeasureUnit::getMinute},
                                                {1, icu::MeasureUnit::getSecond}}};

icu::Measure measure(double count, const TimeUnit& unit) {
    UErrorCode error = U_ZERO_ERROR;
    return {count, new icu::MeasureUnit(unit.unit()), error}; // which it adopts
}

std::string formatted(const icu::Locale& locale, UMeasureFormatWidth width,
                      const std::vector<icu::Measure>& measures) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::MeasureFormat format(locale, width, error);
    icu::UnicodeString text;
    icu::FieldPosition position;
    format.formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), text, position, error);
    return utf8(text);
}

struct ByteUnit {
    double bytes;
    icu::MeasureUnit unit;
    int maxDecimals; // as file managers show them
};

} // namespace

struct IcuFormats::Formatters {
    icu::Locale locale = icu::Locale::getDefault();
    std::unique_ptr<icu::DateFormat> shortTime{
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale)};
    std::unique_ptr<icu::DateFormat> dateAndTime{
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort, locale)};
    std::unique_ptr<icu::DateFormat> dateAndSeconds{
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kMedium, locale)};
    std::unique_ptr<icu::DateFormat> date{
        icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, locale)};
    std::unique_ptr<icu::DateFormat> monthAndDay = dateFormatOf("MMMd", locale);
};

IcuFormats::IcuFormats() : formatters_(std::make_unique<Formatters>()) {}
IcuFormats::~IcuFormats() = default;

std::string IcuFormats::shortTime(Instant instant) const {
    return formatted(formatters_->shortTime.get(), instant);
}

std::string IcuFormats::dateAndTime(Instant instant) const {
    return formatted(formatters_->dateAndTime.get(), instant);
}

std::string IcuFormats::abbreviatedDate(Instant instant) const {
    return formatted(formatters_->date.get(), instant);
}

std::string IcuFormats::monthAndDay(Instant instant) const {
    return formatted(formatters_->monthAndDay.get(), instant);
}

std::string IcuFormats::dateAndTimeWithSeconds(Instant instant) const {
    return formatted(formatters_->dateAndSeconds.get(), instant);
}

std::string IcuFormats::relativeTime(Instant instant, Instant now) const {
    const double seconds = secondsBetween(now, instant);
    const auto rounded = [seconds](double unit) { return std::round(seconds / unit); };
    const auto text = [this](double count, URelativeDateTimeUnit unit) {
        return relativeText(formatters_->locale, count, unit);
    };
    if (std::abs(rounded(1)) < 60)
        return text(rounded(1), UDAT_REL_UNIT_SECOND);
    if (std::abs(rounded(60)) < 60)
        return text(rounded(60), UDAT_REL_UNIT_MINUTE);
    if (std::abs(rounded(secondsPerHour)) < 24)
        return text(rounded(secondsPerHour), UDAT_REL_UNIT_HOUR);
    return text(calendarDays(formatters_->locale, now, instant), UDAT_REL_UNIT_DAY);
}

bool IcuFormats::uses24Hours() const {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(formatters_->locale, error));
    if (!patterns)
        return true;
    const UDateFormatHourCycle cycle = patterns->getDefaultHourCycle(error);
    return cycle == UDAT_HOUR_CYCLE_23 || cycle == UDAT_HOUR_CYCLE_24;
}

std::string IcuFormats::dayHalf(bool afternoon) const {
    UErrorCode error = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(formatters_->locale, error);
    int32_t count = 0;
    const icu::UnicodeString* const names = symbols.getAmPmStrings(count);
    return count == 2 ? utf8(names[afternoon ? 1 : 0]) : std::string();
}

std::string IcuFormats::weekdayName(int weekday) const {
    return weekdayText(formatters_->locale, icu::DateFormatSymbols::WIDE, weekday);
}

std::string IcuFormats::weekdaySymbol(int weekday) const {
    return weekdayText(formatters_->locale, icu::DateFormatSymbols::NARROW, weekday);
}

int IcuFormats::firstWeekday() const {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(formatters_->locale, error));
    return calendar ? calendar->getFirstDayOfWeek(error) : UCAL_SUNDAY;
}

std::string IcuFormats::elapsedTime(double seconds) const {
    // Truncated, so that the text changes when a unit is over.
    const double whole = std::floor(std::clamp(seconds, 0.0, longestTime));
    const auto larger = std::find_if(timeUnits.begin(), timeUnits.end() - 1,
                                     [whole](const TimeUnit& unit) { return whole >= unit.seconds; });
    std::vector<icu::Measure> measures = {measure(std::floor(whole / larger->seconds), *larger)};
    const auto smaller = larger + 1;
    if (smaller != timeUnits.end()) {
        const double rest = std::floor(std::fmod(whole, larger->seconds) / smaller->seconds);
        if (rest > 0)
            measures.push_back(measure(rest, *smaller));
    }
    return formatted(formatters_->locale, UMEASFMT_WIDTH_SHORT, measures);
}

std::string IcuFormats::roundTime(double seconds) const {
    const double time = std::clamp(seconds, 0.0, longestTime);
    // The largest unit that the time, rounded to it, fills at least once: 59.7 minutes are an hour.
    for (const TimeUnit& unit : timeUnits) {
        const double count = std::round(time / unit.seconds);
        if (unit.seconds <= secondsPerHour && (count >= 1 || unit.seconds == 1) &&
            time >= unit.seconds * 0.99)
            return formatted(formatters_->locale, UMEASFMT_WIDTH_WIDE, {measure(count, unit)});
    }
    return formatted(formatters_->locale, UMEASFMT_WIDTH_WIDE, {measure(0, timeUnits.back())});
}

std::string IcuFormats::percentage(double fraction) const {
    UErrorCode error = U_ZERO_ERROR;
    return utf8(icu::number::NumberFormatter::withLocale(formatters_->locale)
                    .unit(icu::NoUnit::percent())
                    .scale(icu::number::Scale::powerOfTen(2))
                    .precision(icu::number::Precision::integer())
                    .formatDouble(fraction, error)
                    .toString(error));
}

std::string IcuFormats::byteCount(std::int64_t bytes) const {
    const std::array<ByteUnit, 5> units = {{{1e3, icu::MeasureUnit::getKilobyte(), 0},
                                            {1e6, icu::MeasureUnit::getMegabyte(), 1},
                                            {1e9, icu::MeasureUnit::getGigabyte(), 2},
                                            {1e12, icu::MeasureUnit::getTerabyte(), 2},
                                            {1e15, icu::MeasureUnit::getPetabyte(), 2}}};
    const auto formatter = icu::number::NumberFormatter::withLocale(formatters_->locale);
    const auto value = static_cast<double>(bytes);
    UErrorCode error = U_ZERO_ERROR;
    for (const ByteUnit& unit : units) {
        const double scale = std::pow(10, unit.maxDecimals);
        const double rounded = std::round(value / unit.bytes * scale) / scale;
        const bool largest = &unit == &units.back();
        if (std::abs(value) < 1000 || (std::abs(rounded) >= 1000 && !largest))
            continue;
        return utf8(formatter.unit(unit.unit)
                        .unitWidth(UNUM_UNIT_WIDTH_SHORT)
                        .precision(icu::number::Precision::maxFraction(unit.maxDecimals))
                        .formatDouble(rounded, error)
                        .toString(error));
    }
    // ICU's short form of a byte is "12 byte".
    return utf8(formatter.unit(icu::MeasureUnit::getByte())
                    .unitWidth(UNUM_UNIT_WIDTH_FULL_NAME)
                    .formatInt(bytes, error)
                    .toString(error));
}

} // namespace norvane
