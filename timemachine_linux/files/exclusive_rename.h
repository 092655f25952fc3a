// Renaming that replaces nothing.
#pragma once

#include <string>

namespace norvane {

/// Never onto something that is there, not even an empty folder. False: errno says why, EEXIST or ENOTEMPTY
/// when something is.
bool renameToFree(const std::string& from, const std::string& to);

} // namespace norvane
