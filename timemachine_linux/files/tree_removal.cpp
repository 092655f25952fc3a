#include "timemachine_linux/files/tree_removal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <fts.h>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/mount_table.h"

namespace norvane {

namespace {

constexpr int realFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

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

struct Entry {
    std::string name;
    bool isFolder;
};

// None: the folder cannot be read.
std::optional<std::vector<Entry>> entriesOf(int folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(
        ::fdopendir(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), ::closedir);
    if (!listing)
        return std::nullopt;
    std::vector<Entry> entries;
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string_view name = entry->d_name;
        struct stat status {};
        if (name != "." && name != ".." &&
            ::fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
            entries.push_back({entry->d_name, S_ISDIR(status.st_mode)});
    }
    return entries;
}

// Descends by descriptor: a source may have been a symbolic link when the leftover was made, and a path
// through such a link leads out of the snapshot.
bool keepOnly(const FileDescriptor& folder, const std::string& snapshotFolder, const std::string& below,
              const std::vector<std::string>& sources) {
    const auto entries = folder ? entriesOf(folder.get()) : std::nullopt;
    bool complete = entries.has_value();
    for (const Entry& entry : entries.value_or(std::vector<Entry>())) {
        const std::string path = std::string(below).append("/").append(entry.name);
        const auto holds = [&](const std::string& source) { return isWithin(source, path); };
        if (std::find(sources.begin(), sources.end(), path) != sources.end())
            continue;
        bool done = false;
        if (std::none_of(sources.begin(), sources.end(), holds))
            done = removeTree(snapshotFolder + path);
        else if (entry.isFolder)
            done = keepOnly(FileDescriptor(::openat(folder.get(), entry.name.c_str(), realFolder)),
                            snapshotFolder, path, sources);
        else
            done = ::unlinkat(folder.get(), entry.name.c_str(), 0) == 0;
        complete = done && complete;
    }
    return complete;
}

} // namespace

bool removeTree(const std::string& path) { return removeFrom(path, What::everything); }

bool removeSharedFiles(const std::string& folder) { return removeFrom(folder, What::sharedFiles); }

bool removeAllBut(const std::string& snapshotFolder, const std::vector<std::string>& sources) {
    if (std::find(sources.begin(), sources.end(), "/") != sources.end())
        return true;
    return keepOnly(FileDescriptor(::open(snapshotFolder.c_str(), realFolder)), snapshotFolder, "", sources);
}

} // namespace norvane
