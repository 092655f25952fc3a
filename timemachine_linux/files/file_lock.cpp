#include "timemachine_linux/files/file_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace norvane {

Result<FileLock> FileLock::tryAcquire(const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return systemFailure();
    struct flock whole {};
    whole.l_type = F_WRLCK;
    if (::fcntl(file.get(), F_OFD_SETLK, &whole) != 0) {
        if (errno == EACCES)
            errno = EAGAIN;
        return systemFailure();
    }
    return FileLock(std::move(file));
}

bool FileLock::isHeld(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return false;
    struct flock whole {};
    whole.l_type = F_RDLCK;
    return ::fcntl(file.get(), F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
}

bool FileLock::write(const std::string& text) const {
    return ::ftruncate(fd(), 0) == 0 &&
           ::pwrite(fd(), text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

} // namespace norvane
