// Telling what lies in a backup from everything else.
#pragma once

#include <optional>
#include <string>

namespace norvane {

/// The folder of the whole snapshot, on any destination or a local one, that the path (absolute, without
/// symbolic links) is or lies in; none when it is in no such snapshot. Looks for the destination's mark.
[[nodiscard]] std::optional<std::string> snapshotHolding(const std::string& path);

} // namespace norvane
