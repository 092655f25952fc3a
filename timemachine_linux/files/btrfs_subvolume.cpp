#include "timemachine_linux/files/btrfs_subvolume.h"

#include <algorithm>
#include <btrfsutil.h>
#include <fcntl.h>
#include <filesystem>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/file_status.h"

namespace norvane {

namespace {

std::optional<Failure> failureUnless(btrfs_util_error done) {
    return done == BTRFS_UTIL_OK ? std::nullopt : std::optional(systemFailure());
}

bool makeWritable(int folder, const std::string& name) {
    const FileDescriptor subvolume(
        ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return subvolume && ::btrfs_util_set_subvolume_read_only_fd(subvolume.get(), false) == BTRFS_UTIL_OK;
}

} // namespace

std::optional<SubvolumeInfo> subvolumeInfo(int folder) {
    struct btrfs_util_subvolume_info found {};
    if (::btrfs_util_is_subvolume_fd(folder) != BTRFS_UTIL_OK ||
        ::btrfs_util_subvolume_info_fd(folder, 0, &found) != BTRFS_UTIL_OK)
        return std::nullopt;
    SubvolumeInfo info;
    std::copy_n(std::begin(found.uuid), info.id.size(), info.id.begin());
    std::copy_n(std::begin(found.parent_uuid), info.parent.size(), info.parent.begin());
    info.created = Instant(std::chrono::seconds(found.otime.tv_sec));
    return info;
}

std::optional<std::string> subvolumeHolding(const std::string& path) {
    const auto inside = fileStatus(path);
    for (std::filesystem::path folder = path; inside; folder = folder.parent_path()) {
        const auto status = fileStatus(folder.string());
        if (!status || status->st_dev != inside->st_dev)
            return std::nullopt;
        if (S_ISDIR(status->st_mode) && ::btrfs_util_is_subvolume(folder.c_str()) == BTRFS_UTIL_OK)
            return folder.string();
        if (folder == "/")
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<Failure> makeSubvolume(int folder, const std::string& name) {
    return failureUnless(::btrfs_util_create_subvolume_fd(folder, name.c_str(), 0, nullptr, nullptr));
}

std::optional<Failure> makeReadOnlySnapshot(int subvolume, int folder, const std::string& name) {
    return failureUnless(::btrfs_util_create_snapshot_fd2(
        subvolume, folder, name.c_str(), BTRFS_UTIL_CREATE_SNAPSHOT_READ_ONLY, nullptr, nullptr));
}

std::optional<Failure> removeSubvolume(int folder, const std::string& name) {
    const auto removeNow = [&] {
        return failureUnless(::btrfs_util_delete_subvolume_fd(folder, name.c_str(), 0));
    };
    const auto failure = removeNow();
    // To users other than root a read-only subvolume is like any read-only file system.
    const bool refused =
        failure && (failure->error == EROFS || failure->error == EPERM || failure->error == EACCES);
    return refused && makeWritable(folder, name) ? removeNow() : failure;
}

} // namespace norvane
