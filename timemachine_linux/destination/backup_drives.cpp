#include "timemachine_linux/destination/backup_drives.h"

#include <algorithm>
#include <array>
#include <map>

namespace norvane {

namespace {

template <class Folders>
bool withinAny(std::string_view path, const Folders& folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](std::string_view folder) { return isWithin(path, folder); });
}

bool comesAndGoes(std::string_view folder) {
    constexpr std::array<std::string_view, 3> places{"/media", "/run/media", "/mnt"};
    return withinAny(folder, places);
}

/// Folders that hold the system (file-system hierarchy of Debian and its kin).
bool belongsToSystem(std::string_view folder) {
    constexpr std::array<std::string_view, 17> places{"/bin", "/boot",    "/dev",  "/efi", "/etc",  "/gnu",
                                                      "/lib", "/nix",     "/proc", "/run", "/sbin", "/snap",
                                                      "/sys", "/sysroot", "/tmp",  "/usr", "/var"};
    return withinAny(folder, places);
}

bool holdsFiles(const Mount& mount) {
    constexpr std::array<std::string_view, 4> images{"squashfs", "erofs", "iso9660", "udf"};
    if (std::find(images.begin(), images.end(), mount.type) != images.end())
        return false;
    // A folder that is shown a second time elsewhere is no drive; a subvolume is mounted like one.
    const bool whole = mount.root == "/" || mount.type == "btrfs";
    return isNetworkFileSystem(mount.type) ||
           (whole && (mount.source.starts_with("/dev/") || mount.type == "zfs"));
}

} // namespace

std::vector<Mount> backupDrives(std::string_view mountInfo, std::string_view home) {
    std::map<std::string, Mount> shown; // a later mount hides an earlier one
    for (Mount& mount : mountTable(mountInfo))
        shown.insert_or_assign(mount.folder, mount);
    std::vector<Mount> drives;
    for (auto& [folder, mount] : shown) {
        const bool wanted = comesAndGoes(folder) || !belongsToSystem(folder);
        if (wanted && !isWithin(home, folder) && holdsFiles(mount))
            drives.push_back(std::move(mount));
    }
    std::stable_partition(drives.begin(), drives.end(),
                          [](const Mount& drive) { return comesAndGoes(drive.folder); });
    return drives;
}

} // namespace norvane
