// Renaming that replaces nothing.
#pragma once

#include <optional>
#include <string>

#include "timemachine_linux/files/failure.h"

namespace norvane {

/// Never onto something that is there, not even an empty folder.
[[nodiscard]] std::optional<Failure> renameToFree(const std::string& from, const std::string& to);

/// Whether such a rename failed because the name is taken.
[[nodiscard]] bool isTaken(const Failure& failure);

} // namespace norvane
