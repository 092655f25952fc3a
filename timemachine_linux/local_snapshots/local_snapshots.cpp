#include "timemachine_linux/local_snapshots/local_snapshots.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <set>

#include "timemachine_linux/files/btrfs_subvolume.h"
#include "timemachine_linux/local_snapshots/local_snapshot_name.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {
namespace {

constexpr int realFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t privateFolder = 0700; // a snapshot of all home folders shows what their modes once allowed
constexpr int mostTries = 1000;        // to find a name that is free, a second later each time

struct OpenVolume {
    FileDescriptor top;
    FileDescriptor snapshots; ///< The folder that holds them; may be closed.
    SubvolumeInfo info;
    std::string trouble; ///< Why the folder cannot be used.
};

std::string folderName() { return std::string(localSnapshotsFolderName); }

std::string troubleWithFolder(int top, int folder) {
    struct stat above {};
    struct stat status {};
    if (::fstat(top, &above) != 0 || ::fstat(folder, &status) != 0)
        return std::strerror(errno);
    if (status.st_dev != above.st_dev)
        return "it is another file system";
    if (status.st_uid != ::geteuid())
        return "it belongs to another user";
    if ((status.st_mode & ALLPERMS) != privateFolder && ::fchmod(folder, privateFolder) != 0)
        return std::strerror(errno);
    return {};
}

enum class IfMissing { leave, make };

/// None: the folder is not a volume.
std::optional<OpenVolume> openVolume(const std::string& volume, IfMissing ifMissing) {
    OpenVolume opened;
    opened.top.reset(::open(volume.c_str(), realFolder));
    const auto info = opened.top ? subvolumeInfo(opened.top.get()) : std::nullopt;
    if (!info)
        return std::nullopt;
    opened.info = *info;
    const std::string name = folderName();
    if (ifMissing == IfMissing::make && ::mkdirat(opened.top.get(), name.c_str(), privateFolder) != 0 &&
        errno != EEXIST) {
        opened.trouble = std::strerror(errno);
        return opened;
    }
    opened.snapshots.reset(::openat(opened.top.get(), name.c_str(), realFolder));
    opened.trouble =
        opened.snapshots ? troubleWithFolder(opened.top.get(), opened.snapshots.get()) : std::strerror(errno);
    if (!opened.trouble.empty())
        opened.snapshots.reset();
    return opened;
}

std::optional<LocalSnapshot> snapshotNamed(const OpenVolume& volume, const std::string& name) {
    const auto token = localSnapshotToken(name);
    if (!token)
        return std::nullopt;
    const FileDescriptor folder(::openat(volume.snapshots.get(), name.c_str(), realFolder));
    const auto info = folder ? subvolumeInfo(folder.get()) : std::nullopt;
    if (!info || info->parent != volume.info.id)
        return std::nullopt;
    return LocalSnapshot{*token, info->created};
}

/// Whether this user may remove a subvolume, which mount options decide: told by trying.
int probeRemoval(int folder) {
    const std::string name = ".probe";
    int error = makeSubvolume(folder, name);
    if (error != 0 && error != EEXIST)
        return error;
    error = removeSubvolume(folder, name);
    if (error != 0)
        ::unlinkat(folder, name.c_str(), AT_REMOVEDIR); // allowed for an empty one
    return error;
}

bool isForbidden(int error) { return error == EPERM || error == EACCES; }

} // namespace

LocalSnapshots::LocalSnapshots(std::string volume) : volume_(std::move(volume)) {}

std::string LocalSnapshots::folder() const { return (volume_ == "/" ? "" : volume_) + "/" + folderName(); }

std::string LocalSnapshots::pathOf(const std::string& token) const {
    return folder() + "/" + localSnapshotName(token);
}

std::vector<LocalSnapshot> LocalSnapshots::list() const {
    std::vector<LocalSnapshot> snapshots;
    const auto volume = openVolume(volume_, IfMissing::leave);
    if (!volume || !volume->snapshots)
        return snapshots;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(
        ::fdopendir(::openat(volume->snapshots.get(), ".", realFolder)), ::closedir);
    while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr)
        if (auto snapshot = snapshotNamed(*volume, entry->d_name))
            snapshots.push_back(std::move(*snapshot));
    std::sort(snapshots.begin(), snapshots.end(), [](const LocalSnapshot& one, const LocalSnapshot& other) {
        return std::tie(one.created, one.token) < std::tie(other.created, other.token);
    });
    return snapshots;
}

LocalSnapshots::Made LocalSnapshots::make(Instant now) const {
    const auto volume = openVolume(volume_, IfMissing::make);
    if (!volume)
        return {{}, volume_ + " is on a file system without snapshots", true};
    if (!volume->snapshots)
        return {{}, folder() + ": " + volume->trouble, true};
    const int removal = ::geteuid() == 0 ? 0 : probeRemoval(volume->snapshots.get());
    if (removal != 0) {
        ::unlinkat(volume->top.get(), folderName().c_str(), AT_REMOVEDIR); // if nothing is in it
        return {{},
                isForbidden(removal)
                    ? volume_ + " lets only root remove snapshots again, unless it is mounted "
                                "with the option user_subvol_rm_allowed"
                    : folder() + ": " + std::strerror(removal),
                isForbidden(removal)};
    }
    int error = EEXIST;
    for (int tries = 0; tries < mostTries && error == EEXIST; ++tries, now += std::chrono::seconds(1)) {
        const std::string token = snapshotName(now);
        error = makeReadOnlySnapshot(volume->top.get(), volume->snapshots.get(), localSnapshotName(token));
        if (error == 0)
            return {token, {}, false};
    }
    return {{}, volume_ + ": " + std::strerror(error), isForbidden(error)};
}

std::string LocalSnapshots::remove(const std::string& token) const {
    const auto volume = openVolume(volume_, IfMissing::leave);
    const std::string name = localSnapshotName(token);
    if (!volume || !volume->snapshots || !snapshotNamed(*volume, name))
        return "there is no local snapshot with the date " + token;
    const FileDescriptor snapshot(::openat(volume->snapshots.get(), name.c_str(), realFolder));
    if (snapshot && ::flock(snapshot.get(), LOCK_EX | LOCK_NB) != 0)
        return pathOf(token) + " is being backed up";
    const int error = removeSubvolume(volume->snapshots.get(), name);
    return error == 0 ? std::string() : pathOf(token) + ": " + std::strerror(error);
}

std::optional<FileDescriptor> LocalSnapshots::hold(const std::string& token) const {
    FileDescriptor snapshot(::open(pathOf(token).c_str(), realFolder));
    if (!snapshot || ::flock(snapshot.get(), LOCK_SH | LOCK_NB) != 0)
        return std::nullopt;
    return snapshot;
}

std::vector<std::string> volumesHolding(const std::vector<std::string>& paths) {
    std::set<std::string> volumes;
    for (const std::string& path : paths)
        if (auto volume = subvolumeHolding(path))
            volumes.insert(std::move(*volume));
    return {volumes.begin(), volumes.end()};
}

} // namespace norvane
