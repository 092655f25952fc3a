// How long an edit of the settings rests before it counts.
#pragma once

namespace norvane {

inline constexpr double settingsDelaySeconds = 0.4;

} // namespace norvane
