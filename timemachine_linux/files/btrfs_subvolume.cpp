#include "timemachine_linux/files/btrfs_subvolume.h"

#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/btrfs_tree.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {
namespace {

constexpr int realFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// False: it does not fit.
template <std::size_t size>
bool putName(char (&field)[size], const std::string& name) {
    if (name.empty() || name.size() >= size || name.find('/') != std::string::npos)
        return false;
    std::memcpy(field, name.c_str(), name.size() + 1);
    return true;
}

int removeNow(int folder, const std::string& name) {
    btrfs_ioctl_vol_args arguments{};
    if (!putName(arguments.name, name))
        return EINVAL;
    return ::ioctl(folder, BTRFS_IOC_SNAP_DESTROY, &arguments) == 0 ? 0 : errno;
}

bool makeWritable(int folder, const std::string& name) {
    const FileDescriptor subvolume(::openat(folder, name.c_str(), realFolder));
    std::uint64_t flags = 0;
    if (!subvolume || ::ioctl(subvolume.get(), BTRFS_IOC_SUBVOL_GETFLAGS, &flags) != 0)
        return false;
    flags &= ~std::uint64_t{BTRFS_SUBVOL_RDONLY};
    return ::ioctl(subvolume.get(), BTRFS_IOC_SUBVOL_SETFLAGS, &flags) == 0;
}

bool isTopFolder(const struct stat& status) {
    return S_ISDIR(status.st_mode) && status.st_ino == BTRFS_FIRST_FREE_OBJECTID;
}

bool onBtrfs(int folder) {
    struct statfs system {};
    return ::fstatfs(folder, &system) == 0 && system.f_type == BTRFS_SUPER_MAGIC;
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

std::optional<SubvolumeInfo> subvolumeInfo(int folder) {
    struct stat status {};
    if (::fstat(folder, &status) != 0 || !isTopFolder(status) || !onBtrfs(folder))
        return std::nullopt;
    btrfs_ioctl_get_subvol_info_args answer{};
    // The kernel may answer 1 beside a full answer (6.18).
    if (::ioctl(folder, BTRFS_IOC_GET_SUBVOL_INFO, &answer) < 0 || answer.treeid == 0)
        return std::nullopt;
    SubvolumeInfo info;
    std::copy_n(std::begin(answer.uuid), info.id.size(), info.id.begin());
    std::copy_n(std::begin(answer.parent_uuid), info.parent.size(), info.parent.begin());
    info.created = Instant(std::chrono::seconds(answer.otime.sec));
    return info;
}

std::optional<std::string> subvolumeHolding(const std::string& path) {
    struct stat inside {};
    if (::lstat(path.c_str(), &inside) != 0)
        return std::nullopt;
    for (std::string folder = path;; folder = parentOf(folder)) {
        struct stat status {};
        if (::lstat(folder.c_str(), &status) != 0 || status.st_dev != inside.st_dev)
            return std::nullopt;
        if (isTopFolder(status)) {
            const FileDescriptor opened(::open(folder.c_str(), realFolder));
            return opened && onBtrfs(opened.get()) ? std::optional(folder) : std::nullopt;
        }
        if (folder == "/")
            return std::nullopt;
    }
}

int makeSubvolume(int folder, const std::string& name) {
    btrfs_ioctl_vol_args arguments{};
    if (!putName(arguments.name, name))
        return EINVAL;
    return ::ioctl(folder, BTRFS_IOC_SUBVOL_CREATE, &arguments) == 0 ? 0 : errno;
}

int makeReadOnlySnapshot(int subvolume, int folder, const std::string& name) {
    btrfs_ioctl_vol_args_v2 arguments{};
    arguments.fd = subvolume;
    arguments.flags = BTRFS_SUBVOL_RDONLY;
    if (!putName(arguments.name, name))
        return EINVAL;
    return ::ioctl(folder, BTRFS_IOC_SNAP_CREATE_V2, &arguments) == 0 ? 0 : errno;
}

int removeSubvolume(int folder, const std::string& name) {
    const int error = removeNow(folder, name);
    // To users other than root a read-only subvolume is like any read-only file system.
    if ((error == EROFS || error == EPERM || error == EACCES) && makeWritable(folder, name))
        return removeNow(folder, name);
    return error;
}

} // namespace norvane
