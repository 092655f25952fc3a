#include "timemachine_linux/destination/snapshot_holding.h"

#include "platform/linux/files/file_status.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/local_snapshots/local_snapshot_name.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {

namespace {

bool isFile(const std::string& path) {
    const auto status = fileStatus(path);
    return status && S_ISREG(status->st_mode);
}

} // namespace

std::optional<std::string> snapshotHolding(const std::string& path) {
    for (std::string folder = path; !folder.empty(); folder = parentOf(folder)) {
        const std::string name = nameOf(folder);
        if (localSnapshotToken(name) && nameOf(parentOf(folder)) == localSnapshotsFolderName)
            return folder;
        // <destination>/<host>/<date>
        if (parseSnapshotName(name) &&
            isFile(parentOf(parentOf(folder)) + "/" + std::string(destinationMarkerName)))
            return folder;
    }
    return std::nullopt;
}

} // namespace norvane
