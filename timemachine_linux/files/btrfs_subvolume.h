// Subvolumes and snapshots of Btrfs (btrfs-subvolume(8)).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/time/instant.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

struct SubvolumeInfo {
    using Id = std::array<std::uint8_t, 16>;

    Id id{};
    Id parent{}; ///< What it is a snapshot of; zeros for none.
    Instant created{};
};

/// What the open folder is, if it is a subvolume's top folder; none for every other folder.
[[nodiscard]] std::optional<SubvolumeInfo> subvolumeInfo(int folder);

/// The top folder of the subvolume that holds the path (absolute, without symbolic links); none when that is
/// not Btrfs, or when the top folder is not above the path because only a part of the subvolume is mounted.
[[nodiscard]] std::optional<std::string> subvolumeHolding(const std::string& path);

/// All of them act in the open folder, with names that hold no slash.
[[nodiscard]] std::optional<Failure> makeSubvolume(int folder, const std::string& name);
[[nodiscard]] std::optional<Failure> makeReadOnlySnapshot(int subvolume, int folder, const std::string& name);
[[nodiscard]] std::optional<Failure> removeSubvolume(int folder, const std::string& name);

} // namespace norvane
