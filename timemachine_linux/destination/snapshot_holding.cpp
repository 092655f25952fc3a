#include "timemachine_linux/destination/snapshot_holding.h"

#include <sys/stat.h>

#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/local_snapshots/local_snapshot_name.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {
namespace {

std::string parentOf(const std::string& path) { return path.substr(0, path.rfind('/')); }
std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool isFile(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
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
