// Where backups go: the first entry of the preferences' "Destinations", and whether it is really there.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "timemachine_linux/files/preferences.h"

namespace norvane {

struct Destination {
    std::string id; ///< A random UUID; the marker file in the folder holds the same.
    std::string name;
    std::string kind; ///< "Local" or "Network".
    std::string path; ///< Absolute and canonical.
    std::optional<std::string> url;
};

/// The file in the destination's folder that tells it from the empty mount point of a disk that is away.
inline constexpr const char* destinationMarkerName = ".norvane-destination";

/// Fails when there is none.
[[nodiscard]] Result<Destination> configuredDestination(const UserDefaultsFile& preferences);

/// Makes the folder the destination, with the backups of this machine that it holds. It is canonical, and
/// `judgeDestination` found it usable.
[[nodiscard]] std::optional<Failure> setDestination(UserDefaultsFile& preferences, const std::string& folder);

[[nodiscard]] std::optional<Failure> removeDestination(UserDefaultsFile& preferences);

/// Whether the folder is there and holds the marker with the destination's id. Bounded to a few seconds even
/// on a network mount that no longer answers; quick otherwise.
[[nodiscard]] bool isAvailable(const Destination& destination);

} // namespace norvane
