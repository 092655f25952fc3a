#include "timemachine_linux/files/exclusive_rename.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

#include "platform/linux/files/file_status.h"

namespace norvane {

std::optional<Failure> renameToFree(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return std::nullopt;
    // Network file systems do not know the flag.
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return systemFailure();
    if (fileStatus(to))
        errno = EEXIST;
    else if (::rename(from.c_str(), to.c_str()) == 0)
        return std::nullopt;
    return systemFailure();
}

bool isTaken(const Failure& failure) { return failure.error == EEXIST || failure.error == ENOTEMPTY; }

} // namespace norvane
