// Whether a backup has left a snapshot, by Time Machine's own records.
#pragma once

#include <string>
#include <vector>

#include "timemachine/tm_util.h"

namespace norvane {

/// On any destination. A snapshot is dated up to two minutes before its backup was seen to run.
[[nodiscard]] bool hasSnapshotSince(const std::vector<TMUtil::DestinationStatus>& destinations,
                                    Instant start);

/// What Time Machine itself says went wrong, on the first destination that says anything; else empty. Goes
/// behind the message of a failure.
[[nodiscard]] std::string reportedError(const std::vector<TMUtil::DestinationStatus>& destinations);

} // namespace norvane
