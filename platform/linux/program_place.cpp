#include "platform/linux/program_place.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <linux/magic.h>
#include <string_view>
#include <sys/vfs.h>
#include <unistd.h>

namespace norvane {

namespace {

constexpr std::string_view replacedFile =
    " (deleted)"; // what the kernel adds once an update took the file's place

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::string programPath() {
    std::array<char, PATH_MAX> link{};
    const ssize_t length = readlink("/proc/self/exe", link.data(), link.size());
    std::string path(link.data(), static_cast<std::size_t>(length > 0 ? length : 0));
    const std::string mount = variable("APPDIR");
    std::string image = variable("APPIMAGE");
    if (!mount.empty() && !image.empty() && path.starts_with(mount + "/")) // else another program's
        return image;
    if (path.ends_with(replacedFile))
        path.resize(path.size() - replacedFile.size());
    return path;
}

bool isOnDiskImage(const std::string& path, std::int64_t fileSystemMagic) {
    return path.starts_with("/Volumes/") || path.find("/AppTranslocation/") != std::string::npos ||
           path.starts_with("/media/") || path.starts_with("/run/media/") ||
           fileSystemMagic == ISOFS_SUPER_MAGIC || fileSystemMagic == UDF_SUPER_MAGIC;
}

bool runsFromDiskImage() {
    const std::string path = programPath();
    struct statfs fileSystem {};
    const bool known = statfs(path.c_str(), &fileSystem) == 0;
    return isOnDiskImage(path, known ? fileSystem.f_type : 0);
}

} // namespace norvane
