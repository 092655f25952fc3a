// Locale formats over ICU.
#pragma once

#include <memory>

#include "platform/formats.h"

namespace norvane {

/// In the process's default locale and the system's time zone, both as they are when this is made. Main
/// thread.
class IcuFormats final : public Formats {
public:
    IcuFormats();
    ~IcuFormats() override;

    [[nodiscard]] std::string shortTime(Instant instant) const override;
    [[nodiscard]] std::string dateAndTime(Instant instant) const override;
    [[nodiscard]] std::string byteCount(std::int64_t bytes) const override;

private:
    struct Formatters;
    const std::unique_ptr<const Formatters> formatters_;
};

} // namespace norvane
