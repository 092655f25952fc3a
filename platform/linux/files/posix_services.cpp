#include "platform/linux/files/posix_services.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <utility>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/mount_table.h"
#include "platform/linux/files/volume_label.h"

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

/// Lets a grandchild look, because who looks at a dead file system can be stuck for ever: nobody waits for
/// it, and it holds none of our files. True also when there is no answer.
bool existsAsTold(const std::string& path) {
    constexpr int limitMilliseconds = 50;
    auto answers = makePipe();
    if (!answers)
        return true;
    std::string shell = "sh";
    std::string option = "-c";
    std::string script = R"({ [ -e "$0" ] && echo yes || echo no; } &)";
    std::string argument = path;
    std::array<char*, 5> words = {shell.data(), option.data(), script.data(), argument.data(), nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, answers->writing.get(), STDOUT_FILENO);
    // The shell looks at the folder it starts in, which must not be the dead one, nor be named by PWD.
    posix_spawn_file_actions_addchdir_np(&files, "/");
    std::array<char*, 1> noVariables = {nullptr};
    pid_t child = 0;
    const int error = posix_spawn(&child, "/bin/sh", &files, nullptr, words.data(), noVariables.data());
    posix_spawn_file_actions_destroy(&files);
    answers->writing.reset();
    if (error != 0)
        return true;
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    pollfd answer{answers->reading.get(), POLLIN, 0};
    char first = 'y';
    if (poll(&answer, 1, limitMilliseconds) == 1 && read(answers->reading.get(), &first, 1) != 1)
        return true;
    return first == 'y';
}

} // namespace

PosixFileSystem::PosixFileSystem(std::string home) : home_(std::move(home)) {}

bool PosixFileSystem::exists(const std::string& path) const {
    const auto mount = mountHolding(mountTableText(), path);
    if (mount && mount->folder != "/" && mount->folder != path && mayNeverAnswer(mount->type))
        return existsAsTold(path);
    // The root of a mount is known without asking its file system.
    struct statx info {};
    return statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, STATX_TYPE, &info) == 0;
}

std::optional<std::string> PosixFileSystem::mountPointOf(const std::string& path) const {
    const auto mount = mountHolding(mountTableText(), path);
    return mount ? std::optional(mount->folder) : std::nullopt;
}

std::string PosixFileSystem::displayName(const std::string& path) const {
    const auto mount = mountHolding(mountTableText(), path);
    const auto label =
        mount && mount->folder == path ? volumeLabel("/dev/disk/by-label", mount->source) : std::nullopt;
    return label.value_or(path);
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
    // A pipe in the file's place would else wait for a reader, now or once it is full.
    const FileDescriptor file(
        open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600));
    struct stat status {};
    if (file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode))
        writeAll(file.get(), bytes);
}

LogFileInfo PosixLogFile::info() const {
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return {static_cast<std::uint64_t>(status.st_size), status.st_ino};
}

std::string PosixLogFile::read(std::uint64_t offset, std::size_t count) const {
    // A pipe in the file's place would else be waited for.
    const FileDescriptor file(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file)
        return {};
    std::string bytes(count, '\0');
    const ssize_t length = pread(file.get(), bytes.data(), count, static_cast<off_t>(offset));
    bytes.resize(static_cast<std::size_t>(length > 0 ? length : 0));
    return bytes;
}

} // namespace norvane
