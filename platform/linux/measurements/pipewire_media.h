// What the PipeWire media server runs for its clients.
#pragma once

#include <chrono>
#include <string_view>

#include "platform/condition_measurements.h"

namespace norvane {

/// The properties of a PipeWire node that tell what it is (pipewire/keys.h); empty ones are not set.
struct MediaNode {
    std::string_view mediaClass;
    std::string_view mediaRole;
    std::string_view deviceApi;
};

/// What it means that this node runs.
[[nodiscard]] MediaUse useOf(const MediaNode& node);

/// Connects, looks at every node once, and disconnects. All false when there is no server or it has not told
/// everything within the limit.
[[nodiscard]] MediaUse pipeWireMediaUse(std::chrono::milliseconds limit);

} // namespace norvane
