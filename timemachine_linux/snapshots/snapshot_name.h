// The names of snapshot folders: local time as "2024-05-01-101500".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/time/instant.h"

namespace norvane {

inline constexpr std::string_view inProgressSuffix = ".inProgress";

/// Any thread but not while the time zone changes (localtime_r(3)).
[[nodiscard]] std::string snapshotName(Instant instant);

/// The instant of a name; none unless the text is exactly a name of a real date. Where the clocks were set
/// back and a name has two instants, one of them.
[[nodiscard]] std::optional<Instant> parseSnapshotName(std::string_view name);

} // namespace norvane
