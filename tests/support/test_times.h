// Wall-clock notation for tests.
#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/time/instant.h"
#include "scheduler_core/calendar.h"

namespace norvane {

constexpr const char* wallTimeFormat = "%Y-%m-%d %H:%M:%E*S";

/// An instant written in UTC, "2024-01-02 10:00:00", with a fraction of a second if wanted.
inline Instant utc(const std::string& text) {
    Instant instant;
    const bool read = cctz::parse(wallTimeFormat, text, cctz::utc_time_zone(), &instant);
    return read ? instant : throw std::invalid_argument(text);
}

/// The UTC notation of an instant, whole seconds; "none" for none.
inline std::string utcText(std::optional<Instant> instant) {
    return instant ? cctz::format("%Y-%m-%d %H:%M:%S", *instant, cctz::utc_time_zone()) : "none";
}

inline Calendar zone(const char* name) { return Calendar::inZone(name).value(); }

} // namespace norvane
