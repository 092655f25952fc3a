#include "timemachine_linux/files/file_system_probe.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"

namespace norvane {

namespace {

std::string probePath(const std::string& folder) { return folder + "/.norvane-probe"; }

FileDescriptor makeProbe(const std::string& path) {
    ::unlink(path.c_str());
    return FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
}

// Asking for an attribute that is not there: "no such attribute" comes from a file system that could have it.
bool knowsAttribute(const std::string& folder, const char* name) {
    return ::getxattr(folder.c_str(), name, nullptr, 0) >= 0 || errno != EOPNOTSUPP;
}

bool keepsNanoseconds(const std::string& folder) {
    const std::string path = probePath(folder);
    const FileDescriptor file = makeProbe(path);
    const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, timespec{1'000'000'000, 123'456'789}};
    struct stat status {};
    const bool known = file && ::futimens(file.get(), times.data()) == 0 && ::fstat(file.get(), &status) == 0;
    ::unlink(path.c_str());
    return !known || status.st_mtim.tv_nsec == times[1].tv_nsec;
}

} // namespace

std::optional<FileSystemSpace> spaceOf(const std::string& folder) {
    struct statvfs status {};
    while (::statvfs(folder.c_str(), &status) != 0)
        if (errno != EINTR)
            return std::nullopt;
    const auto bytes = [&](std::uint64_t blocks) {
        return static_cast<std::int64_t>(blocks * status.f_frsize);
    };
    return FileSystemSpace{bytes(status.f_bavail), bytes(status.f_blocks - status.f_bfree)};
}

FileSystemAbilities abilitiesOf(const std::string& folder) {
    return {knowsAttribute(folder, "system.posix_acl_access"), knowsAttribute(folder, "user.norvane"),
            keepsNanoseconds(folder)};
}

std::optional<Failure> probeHardLinks(const std::string& folder) {
    const std::string path = probePath(folder);
    const std::string second = path + "-link";
    const FileDescriptor file = makeProbe(path);
    ::unlink(second.c_str());
    const bool linked = file && ::link(path.c_str(), second.c_str()) == 0;
    auto failure = linked ? std::nullopt : std::optional(systemFailure());
    ::unlink(second.c_str());
    ::unlink(path.c_str());
    return failure;
}

std::optional<Failure> probeWriting(const std::string& folder) {
    const std::string path = probePath(folder);
    const FileDescriptor file = makeProbe(path);
    const std::string block(4096, 'p');
    const bool written = file && writeAll(file.get(), block) && ::fsync(file.get()) == 0;
    auto failure = written ? std::nullopt : std::optional(systemFailure());
    ::unlink(path.c_str());
    return failure;
}

} // namespace norvane
