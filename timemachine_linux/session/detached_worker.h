// Starting a worker that outlives the program that starts it.
#pragma once

#include <functional>
#include <optional>
#include <sys/types.h>

#include "timemachine_linux/files/file_lock.h"

namespace norvane {

/// Runs `work` in a new process of its own session, in the folder "/", without any descriptor of the caller
/// but the lock's, with standard input and output on /dev/null. The lock passes over to it and is held until
/// it ends. `work` calls its argument once it is going; its result is the process's exit status. Returns
/// then, the process id. None: it could not be started, or ended before it was going. The caller has no other
/// threads.
[[nodiscard]] std::optional<pid_t> startDetached(const FileLock& lock,
                                                 const std::function<int(std::function<void()> going)>& work);

/// Waits for such a process; its exit status, 255 when it did not end by itself.
[[nodiscard]] int waitForDetached(pid_t worker);

} // namespace norvane
