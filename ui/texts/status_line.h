// What the settings mean for the next backup, in one line.
#pragma once

#include <string>

#include "controller/controller_state.h"
#include "platform/formats.h"
#include "platform/translator.h"
#include "ui/kit/theme.h"

namespace norvane {

struct StatusLine {
    Tint dot = Tint::secondary;
    std::string text;
    std::string deferral; ///< Behind the text, orange; empty: a blackout moved nothing.

    bool operator==(const StatusLine&) const = default;
};

[[nodiscard]] StatusLine statusLine(const ControllerState& state, Instant now, const Formats& formats,
                                    const Translator& texts);

/// When a backup starts: the time alone, with the date from 20 hours away on.
[[nodiscard]] std::string fireDateText(Instant instant, Instant now, const Formats& formats);

} // namespace norvane
