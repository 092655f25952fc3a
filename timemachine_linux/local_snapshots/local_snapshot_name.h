// The names of local snapshots: "com.apple.TimeMachine.2024-05-01-101500.local", as a Mac's tmutil prints
// them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

/// The folder at the top of a volume that holds its local snapshots.
inline constexpr std::string_view localSnapshotsFolderName = ".norvane-snapshots";

/// `token` is the date as `snapshotName` gives it.
[[nodiscard]] std::string localSnapshotName(std::string_view token);

/// The date part of a local snapshot's name; none when the text is no such name or the date no real one.
[[nodiscard]] std::optional<std::string> localSnapshotToken(std::string_view name);

} // namespace norvane
