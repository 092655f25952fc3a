#include "timemachine_linux/backup/backup_worker.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/files/file_status.h"
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
    const Step failure = backUp();
    view_.reset();
    removeLocalSnapshots(!failure);
    if (failure)
        keepLeftover(failure->code);
    bool recorded = record(failure);
    if (!failure && removal().thin(around_.clock.now()))
        recorded = record(failure);
    destinationLock_.reset();
    if (failure)
        return failure->code;
    return recorded ? ResultCode::success : ResultCode::failed;
}

BackupWorker::Step BackupWorker::backUp() {
    for (const auto step : {&BackupWorker::awaitEarlierRun, &BackupWorker::openDestination,
                            &BackupWorker::chooseSources, &BackupWorker::chooseView,
                            &BackupWorker::prepareFolder, &BackupWorker::copy, &BackupWorker::finish}) {
        if (Step failure = (this->*step)())
            return failure;
        if (around_.stop.requested() && step != &BackupWorker::finish)
            return stopped();
    }
    return std::nullopt;
}

BackupWorker::Step BackupWorker::awaitEarlierRun() {
    constexpr double earlierRunSeconds = 30;
    if (!waitForEarlierRun(around_.files.copyLock, earlierRunSeconds, around_.stop)) {
        if (around_.stop.requested())
            return stopped();
        return BackupFailure{ResultCode::failed, "rsync of an earlier backup is still running"};
    }
    return std::nullopt;
}

BackupWorker::Step BackupWorker::openDestination() {
    if (!isAvailable(destination_))
        return unavailable("is not available");
    if (::mkdir(store_.folder().c_str(), privateFolder) != 0 && errno != EEXIST)
        return destinationFailure("making the folder of this machine", errno);
    // Whoever else may write to the destination could lead elsewhere by a link.
    destinationFolder_.reset(
        ::open(store_.folder().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!destinationFolder_)
        return destinationFailure("opening the folder of this machine", errno);
    if (Step failure = lockDestination())
        return failure;
    // On a full one, room may still be made.
    if (const auto failure = probeWriting(store_.folder()); failure && !isFull(failure->error))
        return destinationFailure("writing", failure->error);
    return std::nullopt;
}

BackupWorker::Step BackupWorker::lockDestination() {
    // A worker that was killed lets go of its locks one after the other.
    constexpr double lastHolderSeconds = 2;
    if (!waitForEarlierRun(store_.lockFile(), lastHolderSeconds, around_.stop) && around_.stop.requested())
        return stopped();
    auto lock = FileLock::tryAcquire(store_.lockFile());
    if (lock) {
        destinationLock_ = std::move(*lock);
        return std::nullopt;
    }
    const int error = lock.failure().error;
    if (error == EAGAIN)
        return BackupFailure{ResultCode::failed, "another backup to this destination is running"};
    if (error != ENOLCK && error != EOPNOTSUPP && error != ENOSYS && error != EINVAL)
        return destinationFailure("locking the folder of this machine", error);
    notes_.emplace_back("The destination cannot lock files: let no other machine or user back up to it");
    return std::nullopt;
}

BackupWorker::Step BackupWorker::chooseSources() {
    around_.status.enter(phase::findingChanges);
    selection_ = selectSources(around_.preferences, around_.places, destination_.path);
    for (const std::string& path : selection_.missing)
        notes_.push_back("A folder to back up is missing: " + path);
    for (const std::string& path : selection_.inBackups)
        notes_.push_back("left out: " + path + " holds the backups themselves");
    leaveOutOtherFileSystems();
    std::vector<std::string> unreachable = selection_.unreachable;
    for (const std::string& source : selection_.sources)
        if (const auto failure = failureToRead(source))
            unreachable.push_back(failure->text);
    if (!unreachable.empty())
        return BackupFailure{ResultCode::copyFailed,
                             "Cannot read a folder to back up, " + unreachable.front()};
    if (selection_.sources.empty())
        return BackupFailure{ResultCode::nothingToBackUp, "There is no folder to back up"};
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

BackupWorker::Step BackupWorker::chooseView() {
    for (const std::string& volume : volumesHolding(selection_.sources))
        removeLocalSnapshotsForRoom(LocalSnapshots(volume), notes_);
    view_.emplace(selection_, coveredFolders_, destination_.path, around_.clock.now(), notes_);
    return std::nullopt;
}

void BackupWorker::removeLocalSnapshots(bool backedUp) {
    for (const std::string& volume : volumesHolding(selection_.sources))
        if (backedUp)
            removeExpiredLocalSnapshots(LocalSnapshots(volume), around_.clock.now(), notes_);
        else
            removeLocalSnapshotsForRoom(LocalSnapshots(volume), notes_);
}

BackupWorker::Step BackupWorker::prepareFolder() {
    std::vector<std::string> leftovers = store_.unfinished();
    const std::string newest = leftovers.empty() ? std::string() : leftovers.back();
    job_.resuming = !newest.empty() && resume(newest);
    for (const std::string& name : leftovers)
        if (!(job_.resuming && name == newest) && !removeTree(store_.pathOf(name)))
            notes_.push_back("Cannot remove the unfinished backup " + name);
    if (Step failure = makeWritable())
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
BackupWorker::Step BackupWorker::makeWritable() {
    constexpr std::int64_t roomToBegin = 1 << 20;
    auto failure = probeWriting(store_.folder());
    if (failure && isFull(failure->error)) {
        removal().makeRoom(roomToBegin);
        failure = probeWriting(store_.folder());
    }
    return failure ? Step(destinationFailure("writing", failure->error)) : std::nullopt;
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

BackupWorker::Step BackupWorker::copy() {
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
        if (Step failure = copyFrom(place))
            return failure;
    if (!view_->isWhole())
        return BackupFailure{ResultCode::copyFailed, "A local snapshot was removed while it was backed up"};
    return copyVolumeFolders();
}

BackupWorker::Step BackupWorker::copyFrom(const SourcePlace& place) {
    job_.place = place;
    if (!makeFolder(volumeBelow(job_.target, place)))
        return destinationFailure("making the folder of " + place.volume, errno);
    if (!replaceFile(job_.filterFile, filterFileFor(place, selection_.excluded)))
        return BackupFailure{ResultCode::failed,
                             "Cannot write " + job_.filterFile + ": " + std::strerror(errno)};
    CopyJob job = job_;
    if (job.previousSnapshot && !fileStatus(volumeBelow(*job.previousSnapshot, place)))
        job.previousSnapshot.reset(); // it did not hold this volume
    return runCopy(rsyncArguments(job));
}

/// From a snapshot come the sources, but neither its top folder nor those above. Last, because each run of
/// rsync changes the times of the folders that it makes something in.
BackupWorker::Step BackupWorker::copyVolumeFolders() {
    std::vector<std::string> folders;
    for (const SourcePlace& place : view_->places()) {
        const bool whole = place.sources.front() == place.volume;
        const std::string folder = whole ? parentOf(place.volume) : place.volume;
        if (!folder.empty() && folder != "/")
            folders.push_back(folder);
    }
    job_.place = {};
    return folders.empty() ? std::nullopt : runCopy(rsyncFolderArguments(job_, folders));
}

BackupWorker::Step BackupWorker::runCopy(const std::vector<std::string>& arguments) {
    if (Step failure = awaitEarlierRun())
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
        return BackupFailure{ResultCode::failed, "rsync could not be started: " + exit.failure().text};
    tell();
    copiedBytes_ += progress.bytes();
    copiedFiles_ += progress.files();
    const RsyncOutcome outcome = judgeRsyncExit(*exit, around_.stop.requested());
    for (const std::string& note : outcome.notes)
        notes_.push_back(withOriginalPaths(note, job_.place));
    if (!outcome.failure)
        return std::nullopt;
    return BackupFailure{outcome.failure->code, withOriginalPaths(outcome.failure->text, job_.place)};
}

BackupWorker::Step BackupWorker::finish() {
    around_.status.enter(phase::finishing);
    constexpr double lastProcessSeconds = 30;
    StopRequests& stop = around_.stop;
    if (!waitForEarlierRun(around_.files.copyLock, lastProcessSeconds, stop))
        return stop.requested() ? stopped() : BackupFailure{ResultCode::copyFailed, "rsync did not end"};
    if (::syncfs(destinationFolder_.get()) != 0)
        return destinationFailure("writing to the disk", errno);
    if (const auto failure = probeWriting(store_.folder()))
        return destinationFailure("writing to the disk", failure->error);
    if (!isAvailable(destination_))
        return unavailable("has gone away");
    if (const auto snapshot = store_.publish(unfinishedName_, around_.clock.now()); !snapshot)
        return destinationFailure("naming the backup", snapshot.failure().error);
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

bool BackupWorker::record(const Step& failure) {
    AttemptEnd end{failure, notes_, std::nullopt};
    const bool away = failure && failure->code == ResultCode::destinationUnavailable;
    if (!away && isAvailable(destination_))
        end.contents = contentsOf(store_);
    const bool recorded = recordAttemptEnd(around_.preferences, destination_.id, end);
    if (!recorded)
        notes_.emplace_back("The result could not be stored in the preferences");
    writeLog(failure);
    return recorded;
}

void BackupWorker::writeLog(const Step& failure) const {
    const ResultCode code = failure ? failure->code : ResultCode::success;
    std::string text = "Result " + std::to_string(static_cast<int>(code));
    text += failure ? ": " + printable(failure->text) + "\n" : "\n";
    for (const std::string& note : notes_)
        text += printable(note) + "\n";
    replaceFile(around_.files.log, text);
}

SnapshotRemoval BackupWorker::removal() { return {store_, around_.stop, around_.status, notes_}; }

BackupFailure BackupWorker::destinationFailure(const std::string& step, int error) const {
    const std::string message = destination_.path + ": " + step + ": " + std::strerror(error);
    return {isFull(error) ? ResultCode::destinationFull : ResultCode::destinationFailing, message};
}

BackupFailure BackupWorker::unavailable(const char* how) const {
    return {ResultCode::destinationUnavailable, destination_.path + " " + how};
}

BackupFailure BackupWorker::stopped() { return {ResultCode::stopped, "The backup was stopped"}; }

} // namespace norvane
