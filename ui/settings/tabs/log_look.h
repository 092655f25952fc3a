// How a line of the event log looks.
#pragma once

#include <string_view>

namespace norvane {

enum class LogTint { green, red, orange, secondary };

struct LogLook {
    std::string_view symbol;
    LogTint tint;

    bool operator==(const LogLook&) const = default;
};

/// By the words in the message, in upper or lower case.
[[nodiscard]] LogLook lookOf(std::string_view message);

} // namespace norvane
