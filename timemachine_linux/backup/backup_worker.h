// One backup, from its first step to the record of how it ended.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/user_defaults_file.h"
#include "platform/time/clock.h"
#include "timemachine_linux/backup/change_count.h"
#include "timemachine_linux/backup/source_view.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/rsync/rsync_command.h"
#include "timemachine_linux/rsync/rsync_outcome.h"
#include "timemachine_linux/session/session_status_file.h"
#include "timemachine_linux/session/stop_requests.h"
#include "timemachine_linux/snapshots/snapshot_removal.h"
#include "timemachine_linux/snapshots/snapshot_store.h"
#include "timemachine_linux/sources/source_selection.h"

namespace norvane {

/// The caller holds the session's run lock. A snapshot appears under its name only when all of it is on the
/// disk; whatever happens, earlier snapshots stay as they are.
class BackupWorker {
public:
    struct Surroundings {
        const Clock& clock;
        UserDefaultsFile& preferences;
        StopRequests& stop;
        SessionStatusFile& status;
        SessionFiles files;
        UserPlaces places;
        std::string hostName;
        std::string rsyncPath;
    };

    BackupWorker(Surroundings surroundings, Destination destination);

    /// Blocks until the backup has ended and its outcome is in the preferences.
    [[nodiscard]] ResultCode run();

private:
    using Step = std::optional<BackupFailure>; // none: go on

    Step backUp();
    Step awaitEarlierRun();
    Step openDestination();
    Step lockDestination();
    Step chooseSources();
    Step chooseView();
    Step prepareFolder();
    Step makeWritable();
    void leaveOutOtherFileSystems();
    void removeLocalSnapshots(bool backedUp);
    [[nodiscard]] ChangeTotals countTotals();
    void noteSubvolumes(const std::vector<std::string>& otherFileSystems);
    Step copy();
    Step copyFrom(const SourcePlace& place);
    Step copyVolumeFolders();
    Step runCopy(const std::vector<std::string>& arguments);
    Step finish();

    bool resume(const std::string& name);
    void keepLeftover(ResultCode code);
    [[nodiscard]] bool record(const Step& failure);
    void writeLog(const Step& failure) const;
    [[nodiscard]] SnapshotRemoval removal();
    [[nodiscard]] BackupFailure destinationFailure(const std::string& step, int error) const;
    [[nodiscard]] BackupFailure unavailable(const char* how) const;
    [[nodiscard]] static BackupFailure stopped();

    Surroundings around_;
    const Destination destination_;
    const SnapshotStore store_;
    /// Open before the first write, so that syncfs(2) reports every lost one.
    FileDescriptor destinationFolder_;
    std::optional<FileLock> destinationLock_;
    SourceSelection selection_;
    std::vector<std::string> coveredFolders_; // see SourceView
    std::vector<std::string> otherMounts_;    // of other file systems, below the sources
    std::optional<SourceView> view_;
    CopyJob job_;
    std::int64_t copiedBytes_ = 0; // by the runs of rsync that have ended
    std::int64_t copiedFiles_ = 0;
    std::string unfinishedName_;
    std::vector<std::string> notes_;
};

} // namespace norvane
