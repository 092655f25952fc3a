// How a line of the event log looks.
#pragma once

#include <string_view>

#include "ui/kit/theme.h"

namespace norvane {

struct LogLook {
    std::string_view symbol;
    Tint tint;

    bool operator==(const LogLook&) const = default;
};

/// By the words in the message, in upper or lower case.
[[nodiscard]] LogLook lookOf(std::string_view message);

} // namespace norvane
