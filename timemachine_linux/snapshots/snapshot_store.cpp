#include "timemachine_linux/snapshots/snapshot_store.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <memory>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/file_status.h"
#include "timemachine_linux/files/exclusive_rename.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {

namespace {

// Whoever may write to the destination could lead elsewhere by a link.
constexpr int realFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr int mostTries = 1000; // to find a name that is free, a second later each time

bool isFolder(const std::string& path) {
    const auto status = fileStatus(path);
    return status && S_ISDIR(status->st_mode);
}

std::vector<std::string> foldersIn(const std::string& folder, bool (*matches)(std::string_view)) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(::open(folder.c_str(), realFolder)),
                                                      ::closedir);
    while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr)
        if (matches(entry->d_name) && isFolder(folder + "/" + entry->d_name))
            names.emplace_back(entry->d_name);
    std::sort(names.begin(), names.end());
    return names;
}

bool isUnfinishedName(std::string_view name) {
    return name.ends_with(inProgressSuffix) &&
           parseSnapshotName(name.substr(0, name.size() - inProgressSuffix.size())).has_value();
}

// The name is local time, so it moves when the machine changes its time zone and is ambiguous when the clocks
// are set back. The folder's modification time says which instant was meant.
Instant dateOf(const std::string& path, Instant named) {
    const auto status = fileStatus(path);
    if (!status)
        return named;
    const Instant modified{std::chrono::seconds(status->st_mtim.tv_sec)};
    constexpr double widestZoneDifferenceSeconds = 27.0 * 3600;
    return std::abs(secondsBetween(named, modified)) <= widestZoneDifferenceSeconds ? modified : named;
}

bool setModificationTime(const std::string& path, Instant instant) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
    const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, timespec{seconds, 0}};
    return ::utimensat(AT_FDCWD, path.c_str(), times.data(), 0) == 0;
}

/// Network file systems refuse; they have sent the rename already.
bool syncFolder(int folder) { return ::fsync(folder) == 0 || errno == EINVAL || errno == EOPNOTSUPP; }

/// Renames by the date, or by the next second whose name is free; gives what it has become. The new name is
/// on the disk then.
Result<Instant> renameByDate(const std::string& folder, const std::string& from, Instant date,
                             const std::function<Result<std::string>(Instant)>& pathOfDate) {
    const FileDescriptor parent(::open(folder.c_str(), realFolder));
    if (!parent)
        return systemFailure();
    Failure failure;
    for (int tries = 0; tries < mostTries; ++tries, date += std::chrono::seconds(1)) {
        const auto to = pathOfDate(date);
        if (!to)
            return to.failure();
        const auto refused = renameToFree(from, *to);
        if (!refused)
            return syncFolder(parent.get()) ? Result(date) : systemFailure();
        failure = *refused;
        if (!isTaken(failure))
            break;
    }
    return failure;
}

} // namespace

SnapshotStore::SnapshotStore(const std::string& destinationFolder, const std::string& hostName)
    : folder_(destinationFolder + "/" + hostName) {}

std::vector<Snapshot> SnapshotStore::list() const {
    std::vector<Snapshot> snapshots;
    const auto isName = [](std::string_view name) { return parseSnapshotName(name).has_value(); };
    for (const std::string& name : foldersIn(folder_, isName))
        snapshots.push_back({name, dateOf(pathOf(name), *parseSnapshotName(name))});
    // Names are local times, which run backwards in autumn and on a journey to the west.
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const Snapshot& one, const Snapshot& other) { return one.date < other.date; });
    return snapshots;
}

std::vector<std::string> SnapshotStore::unfinished() const { return foldersIn(folder_, isUnfinishedName); }

Result<Snapshot> SnapshotStore::publish(const std::string& unfinishedName, Instant now) const {
    const std::string unfinished = pathOf(unfinishedName);
    const FileDescriptor copy(::open(unfinished.c_str(), realFolder));
    if (!copy)
        return systemFailure();
    const auto date =
        renameByDate(folder_, unfinished, std::chrono::floor<std::chrono::seconds>(now),
                     [&](Instant tried) -> Result<std::string> {
                         if (!setModificationTime(unfinished, tried) || ::fsync(copy.get()) != 0)
                             return systemFailure();
                         return pathOf(snapshotName(tried));
                     });
    if (!date)
        return date.failure();
    return Snapshot{snapshotName(*date), *date};
}

Result<std::string> SnapshotStore::withdraw(const Snapshot& snapshot) const {
    const auto nameOf = [](Instant date) { return snapshotName(date) + std::string(inProgressSuffix); };
    const auto date =
        renameByDate(folder_, pathOf(snapshot.name), snapshot.date,
                     [&](Instant tried) -> Result<std::string> { return pathOf(nameOf(tried)); });
    if (!date)
        return date.failure();
    return nameOf(*date);
}

std::string hostFolderName() {
    std::array<char, 256> buffer{};
    if (::gethostname(buffer.data(), buffer.size() - 1) != 0)
        return "localhost";
    std::string name = buffer.data();
    if (name.empty() || name.starts_with('.') || name.find('/') != std::string::npos)
        return "localhost";
    return name;
}

} // namespace norvane
