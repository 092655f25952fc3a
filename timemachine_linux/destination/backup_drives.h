// The drives that a person may want to back up to.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/files/mount_table.h"

namespace norvane {

/// Of the text of a mountinfo file: what disks and file servers show, the system's own folders and the user's
/// home left out; drives that come and go first, then by folder.
[[nodiscard]] std::vector<Mount> backupDrives(std::string_view mountInfo, std::string_view home);

} // namespace norvane
