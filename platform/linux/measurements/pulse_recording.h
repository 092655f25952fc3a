// Whether somebody records through the sound server.
#pragma once

#include <chrono>

namespace norvane {

/// Asks the PulseAudio protocol's server, PulseAudio or PipeWire. Recording what a loudspeaker plays does not
/// count, nor does a paused recording. Starts no server; false when there is none or it has not answered
/// within the limit.
[[nodiscard]] bool pulseRecordsMicrophone(std::chrono::milliseconds limit);

} // namespace norvane
