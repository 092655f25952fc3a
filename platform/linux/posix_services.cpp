#include "platform/linux/posix_services.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <utility>

#include "platform/linux/file_descriptor.h"

namespace norvane {

namespace {

std::optional<Instant> creationTime(int folder, const char* name) {
    struct statx info {};
    if (statx(folder, name, AT_STATX_DONT_SYNC, STATX_BTIME | STATX_MTIME, &info) != 0)
        return std::nullopt;
    // Some file systems keep no birth time; a report is written once, so its modification time is as good.
    const statx_timestamp& time = (info.stx_mask & STATX_BTIME) != 0 ? info.stx_btime : info.stx_mtime;
    return Instant(std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_nsec / 1000));
}

} // namespace

PosixFileSystem::PosixFileSystem(std::string home) : home_(std::move(home)) {}

bool PosixFileSystem::exists(const std::string& path) const {
    struct statx info {};
    return statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, STATX_TYPE, &info) == 0;
}

std::optional<std::int64_t> PosixFileSystem::homeVolumeAvailableBytes() const {
    struct statvfs volume {};
    int result = 0;
    do {
        result = statvfs(home_.c_str(), &volume);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return std::nullopt;
    return static_cast<std::int64_t>(volume.f_bavail) * static_cast<std::int64_t>(volume.f_frsize);
}

std::optional<std::vector<FolderEntry>> PosixFileSystem::list(const std::string& folder) const {
    const std::unique_ptr<DIR, int (*)(DIR*)> handle(opendir(folder.c_str()), closedir);
    if (!handle)
        return std::nullopt;
    std::vector<FolderEntry> entries;
    while (const dirent* entry = readdir(handle.get())) {
        if (entry->d_name[0] != '.')
            entries.push_back({entry->d_name, creationTime(dirfd(handle.get()), entry->d_name)});
    }
    return entries;
}

PosixLogFile::PosixLogFile(std::string path) : path_(std::move(path)) {}

void PosixLogFile::append(std::string_view bytes) {
    const FileDescriptor file(open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    if (file)
        writeAll(file.get(), bytes);
}

} // namespace norvane
