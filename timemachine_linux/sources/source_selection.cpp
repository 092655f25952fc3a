#include "timemachine_linux/sources/source_selection.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/file_status.h"
#include "platform/linux/files/mount_table.h"
#include "timemachine_linux/files/bounded_call.h"
#include "timemachine_linux/files/mounted_paths.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/local_snapshots/local_snapshots.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

namespace {

// Rules and walks speak of canonical paths; what does not exist cannot be met by them.
std::string resolvedOrAsGiven(const std::string& path) { return resolvedPath(path).valueOr(path); }

void addOnce(std::vector<std::string>& list, std::string path) {
    if (std::find(list.begin(), list.end(), path) == list.end())
        list.push_back(std::move(path));
}

bool covered(const std::vector<std::string>& folders, std::string_view path) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const auto& folder) { return isWithin(path, folder); });
}

using Paths = std::vector<std::string>;

/// A destination below a source goes out as a whole; of one around a source, as of a disk that also holds
/// photos, only its backups.
void leaveOutBackups(const std::string& destinationFolder, Paths& sources, SourceSelection& selection) {
    if (destinationFolder.empty())
        return;
    const std::string store = SnapshotStore(destinationFolder, hostFolderName()).folder();
    const Paths stores = pathsOf(store);
    const auto inBackups = [&](const std::string& source) { return covered(stores, source); };
    std::copy_if(sources.begin(), sources.end(), std::back_inserter(selection.inBackups), inBackups);
    std::erase_if(sources, inBackups);
    for (std::string& path : pathsOf(destinationFolder))
        if (covered(sources, path))
            addOnce(selection.excluded, std::move(path));
}

bool onSameFileSystem(const std::string& one, const std::string& other) {
    const auto first = fileStatus(one);
    const auto second = fileStatus(other);
    return first && second && first->st_dev == second->st_dev;
}

} // namespace

SourceSelection selectSources(const UserDefaultsFile& preferences, const UserPlaces& places,
                              const std::string& destinationFolder) {
    SourceSelection selection;
    std::vector<std::string> found;
    for (const std::string& path : configuredSources(preferences, places)) {
        if (auto canonical = canonicalPath(path))
            addOnce(found, std::move(*canonical));
        else if (const int error = canonical.failure().error; error == ENOENT || error == ENOTDIR)
            selection.missing.push_back(path);
        else
            selection.unreachable.push_back(path + ": " + canonical.failure().text);
    }
    for (const std::string& path :
         {places.home + "/.cache", places.cache, places.home + "/.local/share/Trash", places.stateFolder})
        addOnce(selection.excluded, resolvedOrAsGiven(path));
    for (const std::string& volume : volumesHolding(found))
        addOnce(selection.excluded, LocalSnapshots(volume).folder());
    for (const std::string& path : configuredExclusions(preferences, places))
        addOnce(selection.excluded, resolvedOrAsGiven(path));
    leaveOutBackups(destinationFolder, found, selection);
    for (const std::string& path : found) {
        const bool inside = std::any_of(found.begin(), found.end(), [&](const std::string& other) {
            return other != path && isWithin(path, other) && onSameFileSystem(path, other);
        });
        if (!inside && !covered(selection.excluded, path))
            selection.sources.push_back(path);
    }
    return selection;
}

std::vector<MountBelow> otherFileSystems(const SourceSelection& selection,
                                         const std::vector<std::string>& mountFolders) {
    constexpr double patienceSeconds = 5;
    std::vector<MountBelow> mounts;
    for (const std::string& folder : mountFolders) {
        const auto& sources = selection.sources;
        const auto known = [&](const MountBelow& mount) { return isWithin(folder, mount.folder); };
        if (isLeftOut(selection, folder) ||
            std::find(sources.begin(), sources.end(), folder) != sources.end() ||
            std::any_of(mounts.begin(), mounts.end(), known))
            continue;
        // The innermost source that holds it.
        std::string source;
        for (const std::string& one : sources)
            if (isWithin(folder, one) && one.size() >= source.size())
                source = one;
        const auto answer = callBounded(patienceSeconds, [&]() -> std::optional<std::string> {
            if (!fileStatus(folder)) {
                if (errno == ENOENT) // hidden by a later mount
                    return "same";
                return errno == EACCES ? std::optional<std::string>("other") : std::nullopt;
            }
            return onSameFileSystem(source, folder) ? "same" : "other";
        });
        if (answer != "same")
            mounts.push_back({folder, answer.has_value()});
    }
    return mounts;
}

std::optional<Failure> failureToRead(const std::string& source) {
    const auto status = fileStatus(source);
    if (!status)
        return systemFailure(source);
    if (!S_ISDIR(status->st_mode) && !S_ISREG(status->st_mode))
        return std::nullopt;
    const FileDescriptor opened(::open(source.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!opened)
        return systemFailure(source);
    if (S_ISREG(status->st_mode))
        return std::nullopt;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(
        ::fdopendir(::openat(opened.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), ::closedir);
    errno = listing ? 0 : errno;
    if (!listing || (!::readdir(listing.get()) && errno != 0))
        return systemFailure(source);
    return std::nullopt;
}

bool isLeftOut(const SourceSelection& selection, std::string_view path) {
    return covered(selection.excluded, path) || !covered(selection.sources, path);
}

} // namespace norvane
