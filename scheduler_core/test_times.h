// Wall-clock notation for tests.
#pragma once

#include <chrono>
#include <optional>
#include <sstream>
#include <string>

#include <date/tz.h>

#include "platform/instant.h"
#include "scheduler_core/calendar.h"

namespace norvane {

/// An instant written in UTC, "2024-01-02 10:00:00", with a fraction of a second if wanted.
inline Instant utc(const std::string& text) {
    std::istringstream stream(text);
    Instant instant;
    stream >> date::parse("%F %T", instant);
    return stream.fail() ? throw std::invalid_argument(text) : instant;
}

/// The UTC notation of an instant, whole seconds; "none" for none.
inline std::string utcText(std::optional<Instant> instant) {
    return instant ? date::format("%F %T", date::floor<std::chrono::seconds>(*instant)) : "none";
}

inline Calendar zone(const char* name) { return Calendar::inZone(name).value(); }

} // namespace norvane
