#include "timemachine_linux/files/mounted_paths.h"

#include "platform/linux/files/file_status.h"
#include "platform/linux/files/mount_table.h"

namespace norvane {

namespace {

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
        if (path != folder && isSameFile(fileStatus(path), fileStatus(folder)))
            paths.push_back(path);
    }
    return paths;
}

} // namespace norvane
