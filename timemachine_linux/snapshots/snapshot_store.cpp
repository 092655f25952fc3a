#include "timemachine_linux/snapshots/snapshot_store.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
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
    const FileDescriptor parent(::open(folder_.c_str(), realFolder));
    const FileDescriptor copy(::open(pathOf(unfinishedName).c_str(), realFolder));
    if (!parent || !copy)
        return systemFailure();
    Instant date = std::chrono::floor<std::chrono::seconds>(now);
    Failure failure;
    for (int tries = 0; tries < mostTries; ++tries, date += std::chrono::seconds(1)) {
        if (!setModificationTime(pathOf(unfinishedName), date) || ::fsync(copy.get()) != 0)
            return systemFailure();
        Snapshot snapshot{snapshotName(date), date};
        const auto refused = renameToFree(pathOf(unfinishedName), pathOf(snapshot.name));
        if (!refused)
            return syncFolder(parent.get()) ? Result(std::move(snapshot)) : systemFailure();
        failure = *refused;
        if (!isTaken(failure))
            break;
    }
    return failure;
}

Result<std::string> SnapshotStore::withdraw(const Snapshot& snapshot) const {
    const FileDescriptor parent(::open(folder_.c_str(), realFolder));
    if (!parent)
        return systemFailure();
    Instant date = snapshot.date;
    Failure failure;
    for (int tries = 0; tries < mostTries; ++tries, date += std::chrono::seconds(1)) {
        std::string unfinishedName = snapshotName(date) + std::string(inProgressSuffix);
        const auto refused = renameToFree(pathOf(snapshot.name), pathOf(unfinishedName));
        if (!refused)
            return syncFolder(parent.get()) ? Result(std::move(unfinishedName)) : systemFailure();
        failure = *refused;
        if (!isTaken(failure))
            break;
    }
    return failure;
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
