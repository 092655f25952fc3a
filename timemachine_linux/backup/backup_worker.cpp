#include "timemachine_linux/backup/backup_worker.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/linux/files/mount_table.h"
#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/files/tree_removal.h"
#include "timemachine_linux/local_snapshots/local_snapshot_removal.h"
#include "timemachine_linux/rsync/rsync_process.h"
#include "timemachine_linux/rsync/rsync_progress.h"
#include "timemachine_linux/snapshots/backup_history.h"
#include "timemachine_linux/snapshots/leftover_note.h"
#include "timemachine_linux/snapshots/snapshot_name.h"

namespace norvane {
namespace {

constexpr mode_t privateFolder = 0700; // a snapshot shows nothing to those who cannot read the sources

bool isFull(int error) { return error == ENOSPC || error == EDQUOT; }

} // namespace

BackupWorker::BackupWorker(Surroundings surroundings, Destination destination)
    : around_(std::move(surroundings)), destination_(std::move(destination)),
      store_(destination_.path, around_.hostName) {}

ResultCode BackupWorker::run() {
    around_.status.setDestination(destination_.id, destination_.path);
    around_.status.enter(phase::starting);
    recordAttemptStart(around_.preferences, destination_.id, around_.clock.now());
    const BackupResult result = backUp().value_or(BackupResult{});
    view_.reset();
    removeLocalSnapshots(result.code);
    if (result.code != ResultCode::success)
        keepLeftover(result.code);
    bool recorded = record(result);
    if (result.code == ResultCode::success && removal().thin(around_.clock.now()))
        recorded = record(result);
    destinationLock_.reset();
    return result.code == ResultCode::success && !recorded ? ResultCode::failed : result.code;
}

BackupWorker::Failure BackupWorker::backUp() {
    for (const auto step : {&BackupWorker::awaitEarlierRun, &BackupWorker::openDestination,
                            &BackupWorker::chooseSources, &BackupWorker::chooseView,
                            &BackupWorker::prepareFolder, &BackupWorker::copy, &BackupWorker::finish}) {
        if (Failure failure = (this->*step)())
            return failure;
        if (around_.stop.requested() && step != &BackupWorker::finish)
            return stopped();
    }
    return std::nullopt;
}

BackupWorker::Failure BackupWorker::awaitEarlierRun() {
    constexpr double earlierRunSeconds = 30;
    if (!waitForEarlierRun(around_.files.copyLock, earlierRunSeconds, around_.stop)) {
        if (around_.stop.requested())
            return stopped();
        return BackupResult{ResultCode::failed, "rsync of an earlier backup is still running"};
    }
    return std::nullopt;
}

BackupWorker::Failure BackupWorker::openDestination() {
    if (!isAvailable(destination_))
        return BackupResult{ResultCode::destinationUnavailable, destination_.path + " is not available"};
    if (::mkdir(store_.folder().c_str(), privateFolder) != 0 && errno != EEXIST)
        return destinationFailure("making the folder of this machine", errno);
    // Whoever else may write to the destination could lead elsewhere by a link.
    destinationFolder_.reset(
        ::open(store_.folder().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!destinationFolder_)
        return destinationFailure("opening the folder of this machine", errno);
    if (Failure failure = lockDestination())
        return failure;
    // On a full one, room may still be made.
    if (const int error = probeWriting(store_.folder()); error != 0 && !isFull(error))
        return destinationFailure("writing", error);
    return std::nullopt;
}

BackupWorker::Failure BackupWorker::lockDestination() {
    // A worker that was killed lets go of its locks one after the other.
    constexpr double lastHolderSeconds = 2;
    if (!waitForEarlierRun(store_.lockFile(), lastHolderSeconds, around_.stop) && around_.stop.requested())
        return stopped();
    destinationLock_ = FileLock::tryAcquire(store_.lockFile());
    if (destinationLock_)
        return std::nullopt;
    if (errno == EAGAIN)
        return BackupResult{ResultCode::failed, "another backup to this destination is running"};
    if (errno != ENOLCK && errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL)
        return destinationFailure("locking the folder of this machine", errno);
    notes_.emplace_back("The destination cannot lock files: let no other machine or user back up to it");
    return std::nullopt;
}

BackupWorker::Failure BackupWorker::chooseSources() {
    around_.status.enter(phase::findingChanges);
    selection_ = selectSources(around_.preferences, around_.places, destination_.path);
    for (const std::string& path : selection_.missing)
        notes_.push_back("A folder to back up is missing: " + path);
    for (const std::string& path : selection_.inBackups)
        notes_.push_back("left out: " + path + " holds the backups themselves");
    leaveOutOtherFileSystems();
    std::vector<std::string> unreachable = selection_.unreachable;
    for (const std::string& source : selection_.sources)
        if (std::string trouble = troubleWithSource(source); !trouble.empty())
            unreachable.push_back(std::move(trouble));
    if (!unreachable.empty())
        return BackupResult{ResultCode::copyFailed,
                            "Cannot read a folder to back up, " + unreachable.front()};
    if (selection_.sources.empty())
        return BackupResult{ResultCode::nothingToBackUp, "There is no folder to back up"};
    return std::nullopt;
}

void BackupWorker::leaveOutOtherFileSystems() {
    const auto folders = mountFolders(mountTableText());
    const auto others = otherFileSystems(selection_, folders);
    for (const std::string& folder : folders) {
        const auto& sources = selection_.sources;
        const bool known = std::find(sources.begin(), sources.end(), folder) != sources.end() ||
                           std::any_of(others.begin(), others.end(),
                                       [&](const auto& other) { return isWithin(folder, other.folder); });
        if (!known && !isLeftOut(selection_, folder))
            coveredFolders_.push_back(folder);
    }
    for (const MountBelow& mount : others) {
        otherMounts_.push_back(mount.folder);
        notes_.push_back("left out: " + mount.folder +
                         (mount.answers ? " is another file system" : " does not answer"));
        // rsync would ask it too, and wait or take the error for one of the source.
        if (!mount.answers)
            selection_.excluded.push_back(mount.folder);
    }
}

BackupWorker::Failure BackupWorker::chooseView() {
    for (const std::string& volume : volumesHolding(selection_.sources))
        removeLocalSnapshotsForRoom(LocalSnapshots(volume), notes_);
    view_.emplace(selection_, coveredFolders_, destination_.path, around_.clock.now(), notes_);
    return std::nullopt;
}

void BackupWorker::removeLocalSnapshots(ResultCode code) {
    for (const std::string& volume : volumesHolding(selection_.sources))
        if (code == ResultCode::success)
            removeExpiredLocalSnapshots(LocalSnapshots(volume), around_.clock.now(), notes_);
        else
            removeLocalSnapshotsForRoom(LocalSnapshots(volume), notes_);
}

BackupWorker::Failure BackupWorker::prepareFolder() {
    std::vector<std::string> leftovers = store_.unfinished();
    const std::string newest = leftovers.empty() ? std::string() : leftovers.back();
    job_.resuming = !newest.empty() && resume(newest);
    for (const std::string& name : leftovers)
        if (!(job_.resuming && name == newest) && !removeTree(store_.pathOf(name)))
            notes_.push_back("Cannot remove the unfinished backup " + name);
    if (Failure failure = makeWritable())
        return failure;
    const std::string name = snapshotName(around_.clock.now()) + std::string(inProgressSuffix);
    unfinishedName_ = job_.resuming ? newest : name;
    // Before the folder, so that no folder can be taken for one that an earlier note vouches for.
    writeLeftoverNote(around_.files.leftover, {destination_.id, unfinishedName_, currentBootId()});
    if (job_.resuming || ::mkdir(store_.pathOf(unfinishedName_).c_str(), privateFolder) == 0)
        return std::nullopt;
    const int error = errno;
    unfinishedName_.clear(); // whatever has the name is not ours to vouch for
    ::unlink(around_.files.leftover.c_str());
    return destinationFailure("making the backup's folder", error);
}

/// A disk that is full to the last byte takes not even the folder of a backup, nor tells what it can hold.
BackupWorker::Failure BackupWorker::makeWritable() {
    constexpr std::int64_t roomToBegin = 1 << 20;
    int error = probeWriting(store_.folder());
    if (isFull(error)) {
        removal().makeRoom(roomToBegin);
        error = probeWriting(store_.folder());
    }
    return error == 0 ? std::nullopt : Failure(destinationFailure("writing", error));
}

bool BackupWorker::resume(const std::string& name) {
    if (!canTrust(readLeftoverNote(around_.files.leftover), destination_.id, name, currentBootId()))
        return false;
    const std::string folder = store_.pathOf(name);
    return removeAllBut(folder, selection_.sources) && removeSharedFiles(folder);
}

/// Of the sources in place, even when a snapshot is copied: what has changed within seconds is not worth
/// knowing.
ChangeTotals BackupWorker::countTotals() {
    ChangeQuestion question{selection_.sources, selection_.excluded, {}, job_.abilities.nanoseconds};
    if (job_.previousSnapshot)
        question.bases.push_back(*job_.previousSnapshot);
    if (job_.resuming)
        question.bases.push_back(job_.target);
    ChangeTotals totals = countChanges(question, [&] { return around_.stop.requested(); });
    around_.status.setTotals(totals.bytes, totals.files);
    noteSubvolumes(totals.otherFileSystems);
    return totals;
}

/// No list of mounts has them, and a snapshot of the volume shows empty folders in their places. They are not
/// backed up unasked: programs keep hundreds of them, for containers or as snapshots of what is backed up.
void BackupWorker::noteSubvolumes(const std::vector<std::string>& otherFileSystems) {
    const auto isKnown = [](const std::vector<std::string>& known, const std::string& folder) {
        return std::find(known.begin(), known.end(), folder) != known.end();
    };
    for (const std::string& folder : otherFileSystems)
        if (!isKnown(otherMounts_, folder) && !isKnown(selection_.sources, folder))
            notes_.push_back("left out: " + folder +
                             " is a subvolume of its own, which can be added to the folders to back up");
}

BackupWorker::Failure BackupWorker::copy() {
    const std::vector<Snapshot> snapshots = store_.list();
    job_.target = store_.pathOf(unfinishedName_);
    if (!snapshots.empty())
        job_.previousSnapshot = store_.pathOf(snapshots.back().name);
    job_.filterFile = around_.files.filter;
    job_.abilities = abilitiesOf(store_.folder());
    if (!job_.abilities.accessControlLists)
        notes_.emplace_back("The destination cannot hold access control lists");
    if (!job_.abilities.extendedAttributes)
        notes_.emplace_back("The destination cannot hold extended attributes");
    removal().makeRoom(countTotals().bytes);
    if (around_.stop.requested())
        return stopped();
    around_.status.enter(phase::copying);
    for (const SourcePlace& place : view_->places())
        if (Failure failure = copyFrom(place))
            return failure;
    if (!view_->isWhole())
        return BackupResult{ResultCode::copyFailed, "A local snapshot was removed while it was backed up"};
    return copyVolumeFolders();
}

BackupWorker::Failure BackupWorker::copyFrom(const SourcePlace& place) {
    job_.place = place;
    if (!makeFolder(volumeBelow(job_.target, place)))
        return destinationFailure("making the folder of " + place.volume, errno);
    if (!replaceFile(job_.filterFile, filterFileFor(place, selection_.excluded)))
        return BackupResult{ResultCode::failed,
                            "Cannot write " + job_.filterFile + ": " + std::strerror(errno)};
    CopyJob job = job_;
    struct stat status {};
    if (job.previousSnapshot && ::lstat(volumeBelow(*job.previousSnapshot, place).c_str(), &status) != 0)
        job.previousSnapshot.reset(); // it did not hold this volume
    return runCopy(rsyncArguments(job));
}

/// From a snapshot come the sources, but neither its top folder nor those above. Last, because each run of
/// rsync changes the times of the folders that it makes something in.
BackupWorker::Failure BackupWorker::copyVolumeFolders() {
    std::vector<std::string> folders;
    for (const SourcePlace& place : view_->places()) {
        const bool whole = place.sources.front() == place.volume;
        const std::string folder = whole ? place.volume.substr(0, place.volume.rfind('/')) : place.volume;
        if (!folder.empty() && folder != "/")
            folders.push_back(folder);
    }
    job_.place = {};
    return folders.empty() ? std::nullopt : runCopy(rsyncFolderArguments(job_, folders));
}

BackupWorker::Failure BackupWorker::runCopy(const std::vector<std::string>& arguments) {
    if (Failure failure = awaitEarlierRun())
        return failure;
    RsyncProgressReader progress;
    const auto tell = [&] {
        around_.status.setCopied(copiedBytes_ + progress.bytes(), copiedFiles_ + progress.files());
    };
    RsyncRun run;
    run.program = around_.rsyncPath;
    run.arguments = arguments;
    run.copyLockPath = around_.files.copyLock;
    run.destinationLock = destinationLock_ ? destinationLock_->fd() : -1;
    run.onOutput = [&](std::string_view bytes) { progress.feed(bytes); };
    run.onTick = tell;
    run.onStopping = [&] { around_.status.setStopping(); };
    const auto exit = runRsync(run, around_.stop);
    if (!exit)
        return BackupResult{ResultCode::failed,
                            std::string("rsync could not be started: ") + std::strerror(errno)};
    tell();
    copiedBytes_ += progress.bytes();
    copiedFiles_ += progress.files();
    const RsyncOutcome outcome = judgeRsyncExit(*exit, around_.stop.requested());
    for (const std::string& note : outcome.notes)
        notes_.push_back(withOriginalPaths(note, job_.place));
    if (outcome.code != ResultCode::success)
        return BackupResult{outcome.code, withOriginalPaths(outcome.message, job_.place)};
    return std::nullopt;
}

BackupWorker::Failure BackupWorker::finish() {
    around_.status.enter(phase::finishing);
    constexpr double lastProcessSeconds = 30;
    StopRequests& stop = around_.stop;
    if (!waitForEarlierRun(around_.files.copyLock, lastProcessSeconds, stop))
        return stop.requested() ? stopped() : BackupResult{ResultCode::copyFailed, "rsync did not end"};
    if (::syncfs(destinationFolder_.get()) != 0)
        return destinationFailure("writing to the disk", errno);
    if (const int error = probeWriting(store_.folder()); error != 0)
        return destinationFailure("writing to the disk", error);
    if (!isAvailable(destination_))
        return BackupResult{ResultCode::destinationUnavailable, destination_.path + " has gone away"};
    if (!store_.publish(unfinishedName_, around_.clock.now()))
        return destinationFailure("naming the backup", errno);
    unfinishedName_.clear();
    ::unlink(around_.files.leftover.c_str());
    return std::nullopt;
}

void BackupWorker::keepLeftover(ResultCode code) {
    if (unfinishedName_.empty())
        return;
    // syncfs(2) reports an error once only, so an earlier failure counts beside its answer.
    const bool failing = code == ResultCode::destinationFailing || code == ResultCode::destinationUnavailable;
    if (!failing && ::syncfs(destinationFolder_.get()) == 0 && isAvailable(destination_))
        writeLeftoverNote(around_.files.leftover, {destination_.id, unfinishedName_, ""});
    else
        ::unlink(around_.files.leftover.c_str());
}

bool BackupWorker::record(const BackupResult& result) {
    AttemptEnd end{result, notes_, std::nullopt};
    if (result.code != ResultCode::destinationUnavailable && isAvailable(destination_))
        end.contents = contentsOf(store_);
    const bool recorded = recordAttemptEnd(around_.preferences, destination_.id, end);
    if (!recorded)
        notes_.emplace_back("The result could not be stored in the preferences");
    writeLog(result);
    return recorded;
}

void BackupWorker::writeLog(const BackupResult& result) const {
    std::string text = "Result " + std::to_string(static_cast<int>(result.code));
    text += result.message.empty() ? "\n" : ": " + printable(result.message) + "\n";
    for (const std::string& note : notes_)
        text += printable(note) + "\n";
    replaceFile(around_.files.log, text);
}

SnapshotRemoval BackupWorker::removal() { return {store_, around_.stop, around_.status, notes_}; }

BackupResult BackupWorker::destinationFailure(const std::string& step, int error) const {
    const std::string message = destination_.path + ": " + step + ": " + std::strerror(error);
    return {isFull(error) ? ResultCode::destinationFull : ResultCode::destinationFailing, message};
}

BackupResult BackupWorker::stopped() { return {ResultCode::stopped, "The backup was stopped"}; }

} // namespace norvane
