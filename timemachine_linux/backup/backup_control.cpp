#include "timemachine_linux/backup/backup_control.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <poll.h>
#include <signal.h>
#include <thread>
#include <unistd.h>

extern "C" {
#include <sys/pidfd.h> // glibc 2.36 does not say itself that these are C functions
}

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/program_search.h"
#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"
#include "timemachine_linux/backup/backup_worker.h"
#include "timemachine_linux/session/detached_worker.h"
#include "timemachine_linux/snapshots/backup_history.h"

namespace norvane {

namespace {

// Whoever watches by `tmutil status` every two seconds must see even the shortest backup run, or takes it for
// one that never began.
constexpr double shortestVisibleSeconds = 5;

void stayVisible(const Clock& clock, Instant start, StopRequests& stop) {
    const double left = shortestVisibleSeconds - secondsBetween(start, clock.now());
    pollfd request{stop.fd(), POLLIN, 0};
    if (left > 0 && !stop.requested())
        ::poll(&request, 1, static_cast<int>(std::min(left, shortestVisibleSeconds) * 1000));
}

BackupFailure failedStart(const Clock& clock, UserDefaultsFile& preferences, const Destination& destination,
                          BackupFailure failure) {
    recordAttemptStart(preferences, destination.id, clock.now());
    recordAttemptEnd(preferences, destination.id, {failure, {}, std::nullopt});
    return failure;
}

std::optional<BackupFailure> failureFromTheStart(bool rsyncFound, const Destination& destination) {
    if (!rsyncFound)
        return BackupFailure{ResultCode::rsyncMissing, "rsync is not installed"};
    if (!isAvailable(destination))
        return BackupFailure{ResultCode::destinationUnavailable, destination.path + " is not available"};
    return std::nullopt;
}

std::string lastMessage(const UserDefaultsFile& preferences) {
    const PropertyList destination = firstDestination(preferences);
    const PropertyList* messages = destination.find("MessageParameters");
    if (!messages || !messages->array() || messages->array()->empty() || !messages->array()->front().string())
        return {};
    return *messages->array()->front().string();
}

std::optional<BackupFailure> waitForEnd(pid_t worker, const UserDefaultsFile& preferences) {
    constexpr int highestCode = static_cast<int>(ResultCode::nothingToBackUp);
    const int status = waitForDetached(worker);
    if (status == 0)
        return std::nullopt;
    if (status > highestCode)
        return BackupFailure{ResultCode::failed, "The backup process was killed."};
    return BackupFailure{static_cast<ResultCode>(status), lastMessage(preferences)};
}

std::optional<pid_t> holderOf(const std::string& runLock) {
    const std::string text = readSmallFile(runLock, 32);
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (error != std::errc() || pid <= 1 || !FileLock::isHeld(runLock))
        return std::nullopt;
    return pid;
}

} // namespace

StartOutcome startBackup(const Clock& clock, UserDefaultsFile& preferences, const UserPlaces& places,
                         bool wait) {
    const SessionFiles files(places.stateFolder);
    const auto destination = configuredDestination(preferences);
    if (!destination)
        return {BackupFailure{ResultCode::noDestination, destination.failure().text}};
    if (!makeFolder(files.folder))
        return {BackupFailure{ResultCode::failed, "Cannot make the folder " + files.folder + "."}};
    // Asked before the lock is taken, and recorded only under it: looking at a dead file system takes
    // seconds, in which nothing runs.
    const auto rsync = findProgram("rsync");
    const auto failure = failureFromTheStart(rsync.has_value(), *destination);
    const auto lock = FileLock::tryAcquire(files.runLock);
    if (!lock && lock.failure().error == EAGAIN)
        return {{}, true};
    if (!lock)
        return {BackupFailure{ResultCode::failed, files.runLock + ": " + lock.failure().text}};
    lock->write("");
    ::unlink(files.status.c_str());
    if (failure)
        return {failedStart(clock, preferences, *destination, *failure)};
    const auto worker = startDetached(*lock, [&](const std::function<void()>& going) {
        const Instant start = clock.now();
        StopRequests stop;
        lock->write(std::to_string(::getpid()));
        SessionStatusFile status(clock, files.status);
        going();
        BackupWorker backup({clock, preferences, stop, status, files, places, hostFolderName(), *rsync},
                            *destination);
        const ResultCode code = backup.run();
        if (!wait)
            stayVisible(clock, start, stop);
        return static_cast<int>(code);
    });
    if (!worker)
        return {BackupFailure{ResultCode::failed, "The backup process could not be started."}};
    if (!wait)
        return {};
    return {waitForEnd(*worker, preferences)};
}

bool stopBackup(const SessionFiles& files) {
    // A worker that is just starting has not written its number yet.
    constexpr int mostTries = 200;
    for (int tries = 0; tries < mostTries && FileLock::isHeld(files.runLock); ++tries) {
        const auto pid = holderOf(files.runLock);
        const FileDescriptor process(pid ? ::pidfd_open(*pid, 0) : -1);
        // Asked again once the process is pinned down: the number may have passed on to another one before.
        if (process && holderOf(files.runLock) == pid)
            return ::pidfd_send_signal(process.get(), SIGTERM, nullptr, 0) == 0 || errno == ESRCH;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return !FileLock::isHeld(files.runLock);
}

} // namespace norvane
