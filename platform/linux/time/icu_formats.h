// Locale formats over ICU.
#pragma once

#include <memory>

#include "platform/formats.h"

namespace norvane {

/// In the process's default locale as it is when this is made, and in ICU's default time zone as it is at
/// each call. Main thread.
class IcuFormats final : public Formats {
public:
    IcuFormats();
    ~IcuFormats() override;

    [[nodiscard]] std::string shortTime(Instant instant) const override;
    [[nodiscard]] std::string dateAndTime(Instant instant) const override;
    [[nodiscard]] std::string abbreviatedDate(Instant instant) const override;
    [[nodiscard]] std::string monthAndDay(Instant instant) const override;
    [[nodiscard]] std::string dateAndTimeWithSeconds(Instant instant) const override;
    [[nodiscard]] std::string relativeTime(Instant instant, Instant now) const override;
    [[nodiscard]] bool uses24Hours() const override;
    [[nodiscard]] std::string dayHalf(bool afternoon) const override;
    [[nodiscard]] std::string weekdayName(int weekday) const override;
    [[nodiscard]] std::string weekdaySymbol(int weekday) const override;
    [[nodiscard]] int firstWeekday() const override;
    [[nodiscard]] std::string elapsedTime(double seconds) const override;
    [[nodiscard]] std::string roundTime(double seconds) const override;
    [[nodiscard]] std::string percentage(double fraction) const override;
    [[nodiscard]] std::string byteCount(std::int64_t bytes) const override;

private:
    struct Formatters;
    const std::unique_ptr<Formatters> formatters_;
};

} // namespace norvane
