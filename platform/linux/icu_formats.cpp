#include "platform/linux/icu_formats.h"

#include <array>
#include <cmath>

#include <unicode/datefmt.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>

namespace norvane {

namespace {

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

std::string formatted(const icu::DateFormat* format, Instant instant) {
    if (!format)
        return {};
    const double milliseconds = secondsBetween(Instant{}, instant) * 1000;
    icu::UnicodeString text;
    return utf8(format->format(milliseconds, text));
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
};

IcuFormats::IcuFormats() : formatters_(std::make_unique<Formatters>()) {}
IcuFormats::~IcuFormats() = default;

std::string IcuFormats::shortTime(Instant instant) const {
    return formatted(formatters_->shortTime.get(), instant);
}

std::string IcuFormats::dateAndTime(Instant instant) const {
    return formatted(formatters_->dateAndTime.get(), instant);
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
