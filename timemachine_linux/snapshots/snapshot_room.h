// The room that old snapshots hold alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

/// How many of the snapshots, from the first on, must go so that this many bytes become free; none: all of
/// them hold less. What shares its blocks with a file elsewhere, as unchanged files of later snapshots do,
/// frees nothing. Reads the folders that it counts, with memory for the files that several of them share.
/// What cannot be read counts as nothing; asks often whether to stop.
[[nodiscard]] std::optional<std::size_t> snapshotsHolding(std::int64_t bytes,
                                                          const std::vector<std::string>& folders,
                                                          const std::function<bool()>& stopRequested);

} // namespace norvane
