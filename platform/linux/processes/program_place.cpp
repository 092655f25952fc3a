#include "platform/linux/processes/program_place.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <linux/magic.h>
#include <string_view>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "platform/linux/files/mount_table.h"

namespace norvane {

namespace {

constexpr std::string_view replacedFile =
    " (deleted)"; // what the kernel adds once an update took the file's place

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// Set in every program that an AppImage starts, its own first.
bool isInsideAppImage(const std::string& path) {
    const std::string mount = variable("APPDIR");
    return !mount.empty() && !variable("APPIMAGE").empty() && path.starts_with(mount + "/");
}

std::string executable() {
    std::array<char, PATH_MAX> link{};
    const ssize_t length = readlink("/proc/self/exe", link.data(), link.size());
    std::string path(link.data(), static_cast<std::size_t>(length > 0 ? length : 0));
    if (path.ends_with(replacedFile))
        path.resize(path.size() - replacedFile.size());
    return path;
}

} // namespace

std::string programPath() {
    const std::string path = executable();
    return isInsideAppImage(path) ? variable("APPIMAGE") : path;
}

bool isOnDiskImage(const ProgramPlace& place) {
    if (place.path.starts_with("/Volumes/") || place.path.find("/AppTranslocation/") != std::string::npos)
        return true;
    if (place.appImage)
        return false;
    const bool onMedia = place.path.starts_with("/media/") || place.path.starts_with("/run/media/");
    const bool isImage = place.source.starts_with("/dev/loop");
    return (onMedia && (place.readOnly || isImage)) || place.fileSystemMagic == ISOFS_SUPER_MAGIC ||
           place.fileSystemMagic == UDF_SUPER_MAGIC;
}

bool runsFromDiskImage() {
    ProgramPlace place{.path = programPath(), .appImage = isInsideAppImage(executable())};
    struct statfs fileSystem {};
    if (statfs(place.path.c_str(), &fileSystem) == 0) {
        place.fileSystemMagic = fileSystem.f_type;
        place.readOnly = (fileSystem.f_flags & ST_RDONLY) != 0;
    }
    if (const auto mount = mountHolding(mountTableText(), place.path))
        place.source = mount->source;
    return isOnDiskImage(place);
}

} // namespace norvane
