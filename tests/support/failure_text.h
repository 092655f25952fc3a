// For tests: what failed, in one word with what did not.
#pragma once

#include "timemachine_linux/files/failure.h"

namespace norvane {

/// Empty: nothing failed.
inline std::string textOf(const std::optional<Failure>& failure) { return failure ? failure->text : ""; }

} // namespace norvane
