// The several paths of one folder.
#pragma once

#include <string>
#include <vector>

namespace norvane {

/// Every path at which the folder (absolute, canonical) shows, itself first: what holds it may be mounted at
/// several places, whole or in part.
[[nodiscard]] std::vector<std::string> pathsOf(const std::string& folder);

} // namespace norvane
