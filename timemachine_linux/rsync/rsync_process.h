// One run of rsync as a child process.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "timemachine_linux/files/failure.h"
#include "timemachine_linux/rsync/rsync_outcome.h"
#include "timemachine_linux/session/stop_requests.h"

namespace norvane {

struct RsyncRun {
    std::string program;
    std::vector<std::string> arguments;
    std::string copyLockPath; ///< A lock that every process of this run will hold; or empty.
    int destinationLock = -1; ///< Another one, if held already.
    std::function<void(std::string_view)> onOutput; ///< Pieces of standard output.
    std::function<void()> onTick;                   ///< About four times a second.
    std::function<void()> onStopping;               ///< The stop has been passed on.
};

/// Waits until no process of an earlier run is left, such as one whose worker was killed. False: one still is
/// after `timeoutSeconds`, or a stop was requested.
[[nodiscard]] bool waitForEarlierRun(const std::string& copyLockPath, double timeoutSeconds,
                                     StopRequests& stop);

/// Runs it to its end. rsync dies with the calling process; a stop goes to its whole process group as
/// SIGTERM, and as SIGKILL after ten seconds. Fails if it cannot be started.
[[nodiscard]] Result<RsyncExit> runRsync(const RsyncRun& run, StopRequests& stop);

} // namespace norvane
