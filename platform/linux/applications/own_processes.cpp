#include "platform/linux/applications/own_processes.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <memory>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

/// Longer paths are cut, which tells them as well.
using LinkTarget = std::array<char, 4096>;

std::string_view linkAt(int folder, const char* name, LinkTarget& target) {
    const ssize_t length = readlinkat(folder, name, target.data(), target.size());
    return {target.data(), static_cast<std::size_t>(length < 0 ? 0 : length)};
}

/// The kernel fills the whole buffer as long as there is more.
std::string contentOf(const FileDescriptor& file) {
    constexpr std::size_t limit = 128 * 1024; // the kernel lets one argument or variable be as long
    std::string bytes;
    std::array<char, 16384> chunk;
    ssize_t count = static_cast<ssize_t>(chunk.size());
    while (file && bytes.size() < limit && count == static_cast<ssize_t>(chunk.size())) {
        count = read(file.get(), chunk.data(), chunk.size());
        if (count > 0)
            bytes.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace

std::string OwnProcess::pathOf(std::string_view name) const {
    return std::string(id_).append("/").append(name);
}

std::string OwnProcess::link(std::string_view name) const {
    LinkTarget target;
    return std::string(linkAt(procFolder_, pathOf(name).c_str(), target));
}

std::string OwnProcess::file(std::string_view name) const {
    return contentOf(FileDescriptor(openat(procFolder_, pathOf(name).c_str(), O_RDONLY | O_CLOEXEC)));
}

std::string OwnProcess::fileInItsRoot(const char* name) const {
    // By itself: the kernel never follows a link of /proc when it may use only what it has in memory.
    const FileDescriptor root(openat(procFolder_, pathOf("root").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    open_how how{};
    how.flags = O_RDONLY | O_CLOEXEC;
    how.resolve = RESOLVE_CACHED;
    const auto fd = syscall(SYS_openat2, root.get(), name, &how, sizeof how);
    return contentOf(FileDescriptor(static_cast<int>(fd)));
}

bool OwnProcess::forEachOpenFile(const std::function<bool(std::string_view path)>& visit) const {
    const FileDescriptor folder(
        openat(procFolder_, pathOf("fd").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return errno != EMFILE && errno != ENFILE;
    // Without opendir(), whose buffer and questions cost more than the few entries of most processes.
    alignas(dirent64) std::array<char, 4096> entries;
    LinkTarget target;
    for (ssize_t size = 0; (size = getdents64(folder.get(), entries.data(), entries.size())) > 0;) {
        for (const char* at = entries.data(); at < entries.data() + size;) {
            const auto* const entry = reinterpret_cast<const dirent64*>(at);
            at += entry->d_reclen;
            if (entry->d_name[0] != '.' && !visit(linkAt(folder.get(), entry->d_name, target)))
                return true;
        }
    }
    return true;
}

bool forEachOwnProcess(const std::string& procFolder, std::chrono::steady_clock::time_point end,
                       const std::function<bool(const OwnProcess& process)>& visit) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(procFolder.c_str()), closedir);
    const uid_t user = geteuid();
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9')
            continue;
        struct stat info {};
        if (fstatat(dirfd(folder.get()), entry->d_name, &info, 0) != 0 || info.st_uid != user)
            continue;
        if (std::chrono::steady_clock::now() >= end)
            return false;
        // The kernel makes a new inode for each process, with the time at which that is first looked at.
        const std::int64_t nanoseconds = info.st_ctim.tv_sec * 1'000'000'000 + info.st_ctim.tv_nsec;
        if (!visit(OwnProcess(dirfd(folder.get()), entry->d_name, {info.st_ino, nanoseconds})))
            return true;
    }
    return folder != nullptr;
}

} // namespace norvane
