#include "timemachine_linux/restore/restore.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/file_status.h"
#include "timemachine_linux/destination/snapshot_holding.h"
#include "timemachine_linux/files/exclusive_rename.h"
#include "timemachine_linux/files/file_system_probe.h"
#include "timemachine_linux/files/held_folder.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/files/tree_removal.h"
#include "timemachine_linux/rsync/rsync_command.h"
#include "timemachine_linux/rsync/rsync_process.h"

namespace norvane {

namespace {

constexpr int realFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Moved to another folder, a folder's own ".." changes, which takes the right to write into it.
std::optional<Failure> moveToFree(const std::string& from, const std::string& to) {
    auto refused = renameToFree(from, to);
    const auto status = fileStatus(from);
    if (!refused || refused->error != EACCES || !status || !S_ISDIR(status->st_mode) ||
        ::chmod(from.c_str(), status->st_mode | S_IWUSR) != 0)
        return refused;
    auto failure = renameToFree(from, to);
    ::chmod((failure ? from : to).c_str(), status->st_mode);
    return failure;
}

/// A folder that is removed with what is left in it.
class StagingFolder {
public:
    explicit StagingFolder(const std::string& parent) : path_(parent + "/.norvane-restore-XXXXXX") {
        made_ = ::mkdtemp(path_.data()) != nullptr;
    }
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;
    ~StagingFolder() {
        if (made_)
            removeTree(path_);
    }

    [[nodiscard]] bool made() const { return made_; }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
    bool made_ = false;
};

std::vector<std::string> sourcesOf(const RestorePlan& plan) {
    std::vector<std::string> sources;
    for (const RestoreItem& item : plan.items)
        sources.push_back(item.source);
    return sources;
}

Failure removedMeanwhile(const std::string& snapshot) {
    return {"The backup " + snapshot + " was removed while it was restored from. Nothing is restored."};
}

} // namespace

Result<RestorePlan> planRestore(const std::vector<std::string>& sources, const std::string& destination) {
    RestorePlan plan;
    const auto missing = [](const std::string& path, const Failure& failure) {
        return Failure{path + ": " + failure.text, failure.error};
    };
    const bool intoFolder = isFolder(destination);
    if (!intoFolder && (sources.size() > 1 || destination.ends_with('/')))
        return Failure{destination + " is not a folder."};
    const auto place = intoFolder ? canonicalPath(destination) : resolvedPath(destination);
    if (!place)
        return missing(destination, place.failure());
    plan.folder = intoFolder ? *place : place->substr(0, std::max<std::size_t>(place->rfind('/'), 1));
    if (const auto backup = snapshotHolding(plan.folder))
        return Failure{destination + " lies in the backup " + *backup + ", which must not change."};
    for (const std::string& argument : sources) {
        const auto source = resolvedPath(argument);
        if (!source)
            return missing(argument, source.failure());
        if (!fileStatus(*source))
            return systemFailure(argument);
        const auto snapshot = snapshotHolding(*source);
        if (!snapshot)
            return Failure{argument + " is not in a backup."};
        plan.snapshots.insert(*snapshot);
        const std::string target =
            intoFolder ? (plan.folder == "/" ? "" : plan.folder) + "/" + nameOf(*source) : *place;
        const bool twice = std::any_of(plan.items.begin(), plan.items.end(),
                                       [&](const RestoreItem& item) { return item.target == target; });
        if (twice || fileStatus(target))
            return Failure{target + (twice ? " would be restored twice." : " is there already.") +
                           " Nothing is overwritten: choose another place."};
        plan.items.push_back({*source, target});
    }
    return plan;
}

RestoreOutcome restore(const RestorePlan& plan, const std::string& rsyncPath, StopRequests& stop) {
    const StagingFolder staging(plan.folder);
    const FileDescriptor folder(::open(plan.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!staging.made() || !folder)
        return {systemFailure(plan.folder), {}};
    std::vector<HeldFolder> snapshots;
    for (const std::string& path : plan.snapshots) {
        snapshots.push_back({path, FileDescriptor(::open(path.c_str(), realFolder))});
        if (!snapshots.back().folder)
            return {systemFailure(path), {}};
    }
    const FileSystemAbilities abilities = abilitiesOf(staging.path());
    RsyncRun run;
    run.program = rsyncPath;
    run.arguments = rsyncRestoreArguments(sourcesOf(plan), staging.path(), abilities);
    run.onOutput = [](std::string_view) {};
    run.onTick = [] {};
    run.onStopping = [] {};
    const auto exit = runRsync(run, stop);
    if (!exit)
        return {Failure{"rsync could not be started: " + exit.failure().text}, {}};
    for (const HeldFolder& snapshot : snapshots)
        if (!snapshot.isInPlace())
            return {removedMeanwhile(snapshot.path), {}};
    const RsyncOutcome copied = judgeRsyncExit(*exit, stop.requested());
    if (copied.failure && copied.failure->code == ResultCode::stopped)
        return {Failure{"The restore was stopped."}, {}};
    if (copied.failure)
        return {Failure{copied.failure->text}, {}};
    if (::syncfs(folder.get()) != 0)
        return {systemFailure(plan.folder), {}};
    RestoreOutcome outcome{{}, copied.notes};
    for (const RestoreItem& item : plan.items)
        if (const auto failure = moveToFree(staging.path() + "/" + nameOf(item.source), item.target))
            outcome.failure = Failure{item.target + ": " + failure->text, failure->error};
    if (!outcome.failure && !outcome.notes.empty())
        outcome.failure = Failure{"Not everything could be restored."};
    if (!abilities.accessControlLists || !abilities.extendedAttributes)
        outcome.notes.push_back(plan.folder + " cannot hold all attributes of the files.");
    return outcome;
}

} // namespace norvane
