// Whether the windows keep the program's own accent colour, whatever the desktop's is.
#pragma once

#include "platform/user_defaults.h"

namespace norvane {

inline constexpr auto alwaysBrandAccentKey = "alwaysBrandAccent.v1";

[[nodiscard]] inline bool alwaysBrandAccent(const UserDefaults& defaults) {
    return defaults.boolean(alwaysBrandAccentKey);
}

} // namespace norvane
