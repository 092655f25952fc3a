#include "timemachine_linux/tree_removal.h"

#include <dirent.h>
#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>

#include "timemachine_linux/paths.h"

namespace norvane {
namespace {

enum class What { everything, sharedFiles };

bool removeVisited(const FTSENT& entry, What what) {
    switch (entry.fts_info) {
    case FTS_D:
        // Its content is read and changed only after this.
        if ((entry.fts_statp->st_mode & S_IRWXU) != S_IRWXU)
            ::chmod(entry.fts_accpath, entry.fts_statp->st_mode | S_IRWXU);
        return true;
    case FTS_DP:
        return what == What::sharedFiles || ::rmdir(entry.fts_accpath) == 0;
    case FTS_DNR:
    case FTS_ERR:
    case FTS_NS:
        return entry.fts_errno == ENOENT;
    default:
        if (what == What::sharedFiles && entry.fts_statp->st_nlink < 2)
            return true;
        return ::unlink(entry.fts_accpath) == 0 || errno == ENOENT;
    }
}

bool removeFrom(const std::string& path, What what) {
    std::string root = path;
    const std::array<char*, 2> roots{root.data(), nullptr};
    const std::unique_ptr<FTS, int (*)(FTS*)> walk(::fts_open(roots.data(), FTS_PHYSICAL | FTS_XDEV, nullptr),
                                                   ::fts_close);
    bool complete = walk != nullptr;
    while (walk) {
        errno = 0;
        const FTSENT* entry = ::fts_read(walk.get());
        if (!entry)
            return complete && errno == 0;
        complete = removeVisited(*entry, what) && complete;
    }
    return complete;
}

bool keepOnly(const std::string& snapshotFolder, const std::string& below,
              const std::vector<std::string>& sources) {
    const std::string folder = snapshotFolder + below;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(folder.c_str()), ::closedir);
    bool complete = listing != nullptr;
    while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        const std::string path = below + "/" + std::string(name);
        const auto holds = [&](const std::string& source) { return isWithin(source, path); };
        if (std::find(sources.begin(), sources.end(), path) != sources.end())
            continue;
        const bool onTheWay = std::any_of(sources.begin(), sources.end(), holds);
        complete = (onTheWay ? keepOnly(snapshotFolder, path, sources) : removeTree(snapshotFolder + path)) &&
                   complete;
    }
    return complete;
}

} // namespace

bool removeTree(const std::string& path) { return removeFrom(path, What::everything); }

bool removeSharedFiles(const std::string& folder) { return removeFrom(folder, What::sharedFiles); }

bool removeAllBut(const std::string& snapshotFolder, const std::vector<std::string>& sources) {
    if (std::find(sources.begin(), sources.end(), "/") != sources.end())
        return true;
    return keepOnly(snapshotFolder, "", sources);
}

} // namespace norvane
