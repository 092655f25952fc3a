#include "timemachine_linux/files/held_folder.h"

#include <sys/stat.h>

namespace norvane {

bool HeldFolder::isInPlace() const {
    struct stat opened {};
    struct stat found {};
    return ::fstat(folder.get(), &opened) == 0 && ::lstat(path.c_str(), &found) == 0 &&
           opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

} // namespace norvane
