#include "timemachine_linux/local_snapshots/local_snapshots.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <sys/file.h>

#include "platform/linux/files/file_status.h"
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
    std::optional<Failure> failure; ///< Why the folder cannot be used.
};

std::string folderName() { return std::string(localSnapshotsFolderName); }

/// What does not depend on this user counts as forbidden, too: it will be so the next time.
Failure forbidden(std::string text) { return {std::move(text), EPERM}; }

std::optional<Failure> failureOfFolder(int top, int folder) {
    const auto above = fileStatus(top);
    const auto status = fileStatus(folder);
    if (!above || !status)
        return systemFailure();
    if (status->st_dev != above->st_dev)
        return Failure{"it is another file system"};
    if (status->st_uid != ::geteuid())
        return Failure{"it belongs to another user"};
    if ((status->st_mode & ALLPERMS) != privateFolder && ::fchmod(folder, privateFolder) != 0)
        return systemFailure();
    return std::nullopt;
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
        opened.failure = systemFailure();
        return opened;
    }
    opened.snapshots.reset(::openat(opened.top.get(), name.c_str(), realFolder));
    opened.failure =
        opened.snapshots ? failureOfFolder(opened.top.get(), opened.snapshots.get()) : systemFailure();
    if (opened.failure)
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
std::optional<Failure> probeRemoval(int folder) {
    const std::string name = ".probe";
    if (auto failure = makeSubvolume(folder, name); failure && failure->error != EEXIST)
        return failure;
    auto failure = removeSubvolume(folder, name);
    if (failure)
        ::unlinkat(folder, name.c_str(), AT_REMOVEDIR); // allowed for an empty one
    return failure;
}

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

Result<std::string> LocalSnapshots::make(Instant now) const {
    const auto volume = openVolume(volume_, IfMissing::make);
    if (!volume)
        return forbidden(volume_ + " is on a file system without snapshots");
    if (!volume->snapshots)
        return forbidden(folder() + ": " + volume->failure->text);
    if (const auto failure = ::geteuid() == 0 ? std::nullopt : probeRemoval(volume->snapshots.get())) {
        ::unlinkat(volume->top.get(), folderName().c_str(), AT_REMOVEDIR); // if nothing is in it
        return isForbidden(*failure)
                   ? forbidden(volume_ + " lets only root remove snapshots again, unless it is mounted "
                                         "with the option user_subvol_rm_allowed")
                   : Failure{folder() + ": " + failure->text, failure->error};
    }
    Failure failure;
    for (int tries = 0; tries < mostTries; ++tries, now += std::chrono::seconds(1)) {
        const std::string token = snapshotName(now);
        const auto refused =
            makeReadOnlySnapshot(volume->top.get(), volume->snapshots.get(), localSnapshotName(token));
        if (!refused)
            return token;
        failure = {volume_ + ": " + refused->text, refused->error};
        if (failure.error != EEXIST)
            break;
    }
    return failure;
}

std::optional<Failure> LocalSnapshots::remove(const std::string& token) const {
    const auto volume = openVolume(volume_, IfMissing::leave);
    const std::string name = localSnapshotName(token);
    if (!volume || !volume->snapshots || !snapshotNamed(*volume, name))
        return Failure{"there is no local snapshot with the date " + token};
    const FileDescriptor snapshot(::openat(volume->snapshots.get(), name.c_str(), realFolder));
    if (snapshot && ::flock(snapshot.get(), LOCK_EX | LOCK_NB) != 0)
        return Failure{pathOf(token) + " is being backed up"};
    auto failure = removeSubvolume(volume->snapshots.get(), name);
    if (failure)
        failure->text = pathOf(token) + ": " + failure->text;
    return failure;
}

std::optional<FileDescriptor> LocalSnapshots::hold(const std::string& token) const {
    FileDescriptor snapshot(::open(pathOf(token).c_str(), realFolder));
    if (!snapshot || ::flock(snapshot.get(), LOCK_SH | LOCK_NB) != 0)
        return std::nullopt;
    return snapshot;
}

bool isForbidden(const Failure& failure) { return failure.error == EPERM || failure.error == EACCES; }

std::vector<std::string> volumesHolding(const std::vector<std::string>& paths) {
    std::set<std::string> volumes;
    for (const std::string& path : paths)
        if (auto volume = subvolumeHolding(path))
            volumes.insert(std::move(*volume));
    return {volumes.begin(), volumes.end()};
}

} // namespace norvane
