#include "timemachine_linux/files/mounted_paths.h"

#include <sys/stat.h>

#include "platform/linux/files/mount_table.h"

namespace norvane {
namespace {

bool isSameFile(const std::string& one, const std::string& other) {
    struct stat first {};
    struct stat second {};
    return ::lstat(one.c_str(), &first) == 0 && ::lstat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// `path`, which lies in the folder `from`, as it is called in the folder `to`.
std::string moved(const std::string& path, const std::string& from, const std::string& to) {
    const std::string below = from == "/" ? path : path.substr(from.size());
    if (to == "/" || below == "/")
        return below.empty() ? "/" : to == "/" ? below : to;
    return to + below;
}

} // namespace

std::vector<std::string> pathsOf(const std::string& folder) {
    std::vector<std::string> paths{folder};
    const std::string table = mountTableText();
    const auto own = mountHolding(table, folder);
    if (!own)
        return paths;
    const std::string inside = moved(folder, own->folder, own->root);
    for (const std::string& place : mountFolders(table)) {
        const auto mount = mountHolding(table, place);
        if (!mount || mount->type != own->type || mount->source != own->source ||
            !isWithin(inside, mount->root))
            continue;
        const std::string path = moved(inside, mount->root, mount->folder);
        if (path != folder && isSameFile(path, folder))
            paths.push_back(path);
    }
    return paths;
}

} // namespace norvane
